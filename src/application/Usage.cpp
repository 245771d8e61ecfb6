// The help text and the version text. Columns and widths are fixed: users and programs read these texts.

#include <kelvobase/Application.h>
#include <kelvobase/Strings.h>
#include <kelvobase/System.h>

#include <locale>
#include <sstream>

namespace KelvoBase
{

namespace
{

constexpr unsigned int helpColumn = 25;
// A row of the table up to its help text: five characters for the letter, "--", and the name with its filler.
constexpr std::size_t nameWidth = helpColumn - 5 - 2;

/// Lets short lines flow together again, separated by blanks, in rows of less than `width`.
std::string joinToWidth(const std::vector<std::string>& lines, std::size_t width)
{
    // Required: a row that ends because of the width keeps a blank in front of its line end.
    constexpr char rowEnd[] = " \n";
    std::string out;
    std::size_t current = 0;
    for (const std::string& line : lines) {
        if (line.size() + 1 >= width) {
            if (current != 0) {
                out += rowEnd;
            }
            out.append(line).append(rowEnd);
            current = 0;
            continue;
        }
        if (current + 1 + line.size() >= width) {
            out += rowEnd;
            current = 0;
        }
        if (current != 0) {
            out += ' ';
            ++current;
        }
        out += line;
        current += line.size();
    }
    if (current != 0) {
        out += '\n';
    }
    return out;
}

std::string paragraph(const std::string& text)
{
    const unsigned int width = System::linelength();
    return joinToWidth(wordwrap(text, width - 1), width);
}

/// `-l number` or `--limit number`, as the synopsis shows an option.
std::string briefForm(const CLOption& option, const std::string& argument)
{
    std::string form = option.getShort() != 0 ? std::string("-") + option.getShort() : "--" + option.getLong();
    if (option.getValue() != nullptr) {
        form.append(" ").append(argument);
    }
    return form;
}

/// A row of the table, and further rows where the help text needs them.
void appendRow(std::string& out, const CLOption& option, const std::string& argument, const std::string& help)
{
    const std::string indent(helpColumn, ' ');
    if (option.getShort() != 0) {
        out.append(" -").append(1, option.getShort()).append(", ");
    } else {
        out.append(5, ' ');
    }
    // Required: the blank behind the name counts, also for an option without argument.
    std::string name = option.getLong() + ' ';
    if (option.getValue() != nullptr) {
        name += argument;
    }
    out.append("--").append(name);
    if (name.size() >= nameWidth) {
        out.append("\n").append(indent);
    } else {
        out.append(nameWidth - name.size(), ' ');
    }
    const std::vector<std::string> lines = wordwrap(help, System::linelength() - helpColumn - 1);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        out.append(i == 0 ? "" : indent).append(lines[i]).append("\n");
    }
}

} // namespace

void Application::usage() const
{
    std::string synopsis = mProgramName + ' ';
    for (const CLOption* option : mOptions) {
        const std::string form = briefForm(*option, option->mArgName);
        synopsis += option->mMandatory ? form + ' ' : '[' + form + "] ";
    }
    for (const std::string& name : mPositionalNames) {
        synopsis.append(name).append(" ");
    }
    std::string text = paragraph(synopsis);
    if (!mDescription.empty()) {
        text += '\n';
    }
    // Required: an empty description still leaves its empty line in front of the table.
    text.append(paragraph(mDescription)).append("\n");
    for (const CLOption* option : mOptions) {
        appendRow(text, *option, option->mArgName, option->mHelp);
    }
    if (!mAdditionalHelpText.empty()) {
        text.append("\n").append(paragraph(mAdditionalHelpText));
    }
    // Required: besides the line end that `message` adds; the help text ends in an empty line.
    text += '\n';
    message(text);
}

std::string Application::versionText() const
{
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << mAppName << ", Version " << mVersion << " (Rev. " << mRevision
         << ") \n"
         // Required: "NOW", where the tool set no year, is printed as it stands.
         << "(c) " << mYear << " Ostrelle\n\n"
         << mAppName << " is based on the DRAVO library.\n"
         << "(c) 1999-" << mYear << " Ostrelle";
    return text.str();
}

} // namespace KelvoBase
