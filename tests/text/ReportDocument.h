#pragma once

/// \file
/// A document as a tool writes one, in whatever format it is given.

#include <kelvobase/Literature.h>
#include <kelvobase/TextFormatter.h>
#include <kelvobase/TextRep.h>

#include <string>
#include <vector>

namespace KelvoBase::test
{

/// A label, closed where the format opens a span for it.
inline void mark(TextFormatter& out, const std::string& name)
{
    out.label(name);
    if (dynamic_cast<TexTextFormatter*>(&out) == nullptr) {
        out.end();
    }
}

inline void writeHeader(TextFormatter& out, int level, const std::string& text, const std::string& name)
{
    out.header(level);
    out.print(text);
    out.end();
    if (!name.empty()) {
        mark(out, name);
    }
}

inline void writeItem(TextFormatter& out, const std::string& text)
{
    out.listitem();
    out.print(text);
}

inline void writeSummary(TextFormatter& out)
{
    writeHeader(out, 1, "Survey of rain_fall & wind_speed", "sec:survey");
    out.print("All amounts are in $ at the prices of 2004.");
    out.br();
    out.print("What is ");
    out.em();
    out.print("not measured");
    out.end();
    out.print("is ");
    out.b();
    out.u();
    out.print("left out");
    out.end();
    out.end();
    out.print("without a word, see ");
    out.ref("sec:methods");
    out.print("the methods");
    out.end();
    out.print(".\n");
}

inline void writeMethods(TextFormatter& out)
{
    writeHeader(out, 2, "Methods", "sec:methods");
    out.ulist();
    writeItem(out, "sums that do not lose digits,\n");
    writeItem(out, "two steps:\n");
    out.olist();
    writeItem(out, "sort_values,\n");
    writeItem(out, "add_values & check;");
    out.end();
    writeItem(out, "sources: ");
    out.link("http://www.example.org/rain?year=2004");
    out.print("the archive");
    out.end();
    out.print(" and ");
    out.link("data/rain_2004.txt");
    out.print("data/rain_2004.txt");
    out.end();
    out.end();
    writeHeader(out, 3, "Accuracy", "");
    out.print("Better than the prices.\n");
    writeHeader(out, 4, "Remark.", "");
    out.print("Back to ");
    out.ref("sec:survey");
    out.print("the beginning");
    out.end();
    out.print(".\n");
}

inline void writeCitations(TextFormatter& out)
{
    const std::vector<Literature> papers{
        {"Sums & Products of a_n",
         {{"Berg", "Anna", "", "Maria"}, {"Vale", "Ole", "Per", ""}},
         "J. Num. Meth.",
         7,
         2004,
         "read it",
         1,
         9},
        {"", {{"Oda", "", "", ""}}, "Weather & Wind", 0, 1998, "", 112, 0},
    };
    writeHeader(out, 2, "Literature", "");
    out.olist();
    for (const Literature& paper : papers) {
        TextRep rep;
        paper.toString(rep);
        out.listitem();
        rep.flush(&out);
        out.print("\n");
    }
    out.end();
    TextRep count;
    count << static_cast<unsigned int>(papers.size()) << " papers, " << TextTag::b() << 1200u << TextTag::end()
          << "pages_read.\n";
    count.flush(&out);
}

inline void writeReport(TextFormatter& out)
{
    out.beginDocument("Survey");
    writeSummary(out);
    writeMethods(out);
    writeCitations(out);
    out.endDocument();
}

} // namespace KelvoBase::test
