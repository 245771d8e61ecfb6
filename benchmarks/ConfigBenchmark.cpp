/// \file
/// A configuration of 10 MB: reading, looking up, writing, and the memory it holds, beside GLib's key file,
/// Boost.PropertyTree's and POCO's INI readers, and the same values in plain maps, read and written by hand.
///
/// All read one text, made in memory with a fixed seed: sections of entries in no order, numbers, texts, quoted texts,
/// lists, comments. Only KelvoBase and the maps make lists and take quotes away; the others keep each text as it is.

#include <kelvobase/Any.h>
#include <kelvobase/ConfigFile.h>

#include <benchmark/benchmark.h>
#include <boost/property_tree/ini_parser.hpp>
#include <boost/property_tree/ptree.hpp>

#include <algorithm>
#include <array>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#if __has_include(<sys/wait.h>)
#include <sys/wait.h>
#include <unistd.h>
#define HAVE_FORK
#endif
#if __has_include(<malloc.h>)
#include <malloc.h>
#endif
#ifdef HAVE_GLIB
#include <glib.h>
#endif
#ifdef HAVE_POCO
#include <Poco/AutoPtr.h>
#include <Poco/Util/IniFileConfiguration.h>
#endif

namespace
{

using Key = std::pair<std::string, std::string>; // section and key

void prove(bool right)
{
    if (!right) {
        throw std::logic_error("wrong content");
    }
}

/// What every reader must have found.
struct Facts
{
    std::size_t sections = 0;
    std::size_t entries = 0;
    long sum = 0; // of the numbers: the keys that begin with "number"

    void add(const std::string& key, const std::string& text)
    {
        ++entries;
        sum += key.starts_with("number") ? std::stol(text) : 0;
    }
    bool operator==(const Facts&) const = default;
};

/// The input: the text in a file of its own, and what is known of it.
class Input
{
public:
    Input(const std::string& folder, std::size_t size) : mFolder(folder)
    {
        std::filesystem::create_directories(mFolder);
        while (mText.size() < size) {
            addSection();
        }
        std::shuffle(mKeys.begin(), mKeys.end(), mRandom);
        std::ofstream(path()) << mText;
        // Where "#" begins no comment, ";" does.
        std::replace(mText.begin(), mText.end(), '#', ';');
        std::ofstream(path(';')) << mText;
    }
    ~Input() { std::filesystem::remove_all(mFolder); }
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;

    std::string path(char commentSign = '#') const { return mFolder + (commentSign == '#' ? "/hash" : "/semicolon"); }
    std::string target() const { return mFolder + "/target"; }
    double size() const { return static_cast<double>(mText.size()); }
    const Facts& facts() const { return mFacts; }
    /// All keys in no order.
    const std::vector<Key>& keys() const { return mKeys; }

private:
    std::size_t below(std::size_t limit) { return mRandom() % limit; }

    std::string word()
    {
        std::string letters(2 + below(9), ' ');
        for (char& c : letters) {
            c = static_cast<char>('a' + below(26));
        }
        return letters;
    }
    std::string words(std::size_t count, const char* between)
    {
        std::string text = word();
        while (--count > 0) {
            text += between + word();
        }
        return text;
    }
    void addSection()
    {
        const std::string section = word() + " " + std::to_string(mFacts.sections++);
        mText += "# " + words(8, " ") + "\n[" + section + "]\n";
        for (std::size_t i = 0, count = 5 + below(40); i < count; ++i) {
            addEntry(section, word() + "-" + std::to_string(i));
        }
        mText += "\n";
    }
    void addEntry(const std::string& section, std::string key)
    {
        std::string text;
        switch (below(8)) {
        case 0:
        case 1:
        case 2:
            key = "number-" + key;
            text = std::to_string(below(1'000'000));
            break;
        case 3:
            text = words(2 + below(6), ", ");
            break;
        case 4:
            text = "\"" + words(3, ", ") + "\"";
            break;
        default:
            text = words(1 + below(10), " ");
        }
        mFacts.add(key, text);
        mKeys.emplace_back(section, key);
        mText += (below(3) == 0 ? "# " + words(4 + below(6), " ") + "\n" : "") + key + " = " + text + "\n";
    }

    std::string mFolder;
    std::mt19937 mRandom{20030817};
    std::string mText;
    Facts mFacts;
    std::vector<Key> mKeys;
};

const Input& large()
{
    static const Input made("ConfigBenchmark.large", 10'000'000);
    return made;
}

/// What a tool's configuration is rather like.
const Input& small()
{
    static const Input made("ConfigBenchmark.small", 4'000);
    return made;
}

/// The library.
struct Kelvo
{
    KelvoBase::ConfigFile config;

    explicit Kelvo(const Input& input) : config(input.path()) {}

    Facts facts() const
    {
        Facts found;
        for (auto section = config.beginSection(); section != config.endSection(); ++section) {
            ++found.sections;
            for (const auto& [key, value] : section->second) {
                found.add(key, value->toString(","));
            }
        }
        return found;
    }
    bool has(const Key& key) const { return config.getEntry(key.first, key.second) != nullptr; }
    void write(const std::string& target) const { config.saveToDisk(target); }
};

/// The same content in plain maps, with a reader that looks at each line once.
class Maps
{
public:
    explicit Maps(const Input& input)
    {
        std::ifstream in(input.path());
        std::map<std::string, Value>* section = &mSections[""];
        for (std::string line; std::getline(in, line);) {
            std::string_view rest = trimmed(std::string_view(line).substr(0, line.find('#')));
            if (rest.starts_with('[')) {
                section = &mSections[std::string(rest.substr(1, rest.find(']') - 1))];
            } else if (!rest.empty()) {
                const auto cut = rest.find('=');
                (*section)[std::string(trimmed(rest.substr(0, cut)))] =
                    cut == std::string_view::npos ? Value(true) : valueOf(trimmed(rest.substr(cut + 1)));
            }
        }
    }

    Facts facts() const
    {
        Facts found;
        for (const auto& [name, entries] : mSections) {
            found.sections += name.empty() ? 0 : 1;
            for (const auto& [key, value] : entries) {
                found.add(key, textOf(value));
            }
        }
        return found;
    }
    bool has(const Key& key) const
    {
        const auto section = mSections.find(key.first);
        return section != mSections.end() && section->second.find(key.second) != section->second.end();
    }
    void write(const std::string& target) const
    {
        std::ofstream out(target);
        for (const auto& [name, entries] : mSections) {
            out << '[' << name << "]\n";
            for (const auto& [key, value] : entries) {
                out << key << '=' << textOf(value) << '\n';
            }
            out << '\n';
        }
    }

private:
    using Value = std::variant<bool, std::string, std::vector<std::string>>;

    static std::string_view trimmed(std::string_view text)
    {
        const auto begin = std::min(text.find_first_not_of(" \t\r"), text.size());
        return text.substr(begin, text.find_last_not_of(" \t\r") + 1 - begin);
    }
    static Value valueOf(std::string_view text)
    {
        std::vector<std::string> tokens(1);
        bool quoted = false;
        for (const char c : text) {
            if (c == '"') {
                quoted = !quoted;
            } else if (c == ',' && !quoted) {
                tokens.emplace_back();
            } else {
                tokens.back() += c;
            }
        }
        for (std::string& token : tokens) {
            token = std::string(trimmed(token));
        }
        return tokens.size() == 1 ? Value(std::move(tokens[0])) : Value(std::move(tokens));
    }
    static std::string textOf(const Value& value)
    {
        if (const auto* text = std::get_if<std::string>(&value)) {
            return *text;
        }
        std::string joined;
        if (const auto* list = std::get_if<std::vector<std::string>>(&value)) {
            for (const std::string& element : *list) {
                joined += (joined.empty() ? "" : ",") + element;
            }
            return joined;
        }
        return "1";
    }

    std::map<std::string, std::map<std::string, Value>> mSections;
};

#ifdef HAVE_GLIB
class Glib
{
public:
    explicit Glib(const Input& input)
    {
        prove(g_key_file_load_from_file(mFile.get(), input.path().c_str(), G_KEY_FILE_NONE, nullptr) != FALSE);
    }

    Facts facts() const
    {
        Facts found;
        const Texts groups(g_key_file_get_groups(mFile.get(), &found.sections));
        for (char** group = groups.get(); *group != nullptr; ++group) {
            const Texts keys(g_key_file_get_keys(mFile.get(), *group, nullptr, nullptr));
            for (char** key = keys.get(); *key != nullptr; ++key) {
                const Text value(g_key_file_get_value(mFile.get(), *group, *key, nullptr));
                found.add(*key, value.get());
            }
        }
        return found;
    }
    bool has(const Key& key) const
    {
        const Text value(g_key_file_get_value(mFile.get(), key.first.c_str(), key.second.c_str(), nullptr));
        return value != nullptr;
    }
    /// Not with GLib's own operation, which waits for the disk.
    void write(const std::string& target) const
    {
        gsize size = 0;
        const Text text(g_key_file_to_data(mFile.get(), &size, nullptr));
        std::ofstream(target).write(text.get(), static_cast<std::streamsize>(size));
    }

private:
    struct Free
    {
        void operator()(GKeyFile* file) const { g_key_file_free(file); }
        void operator()(char** texts) const { g_strfreev(texts); }
        void operator()(char* text) const { g_free(text); }
    };
    using Text = std::unique_ptr<char, Free>;
    using Texts = std::unique_ptr<char*, Free>;

    std::unique_ptr<GKeyFile, Free> mFile{g_key_file_new()};
};
#endif

class BoostIni
{
public:
    explicit BoostIni(const Input& input) { boost::property_tree::read_ini(input.path(), mTree); }

    Facts facts() const
    {
        Facts found;
        for (const auto& [name, entries] : mTree) {
            ++found.sections;
            for (const auto& [key, value] : entries) {
                found.add(key, value.data());
            }
        }
        return found;
    }
    bool has(const Key& key) const
    {
        const auto section = mTree.find(key.first);
        return section != mTree.not_found() && section->second.find(key.second) != section->second.not_found();
    }
    void write(const std::string& target) const { boost::property_tree::write_ini(target, mTree); }

private:
    boost::property_tree::ptree mTree;
};

#ifdef HAVE_POCO
class PocoIni
{
public:
    explicit PocoIni(const Input& input) : mInput(input), mConfig(new Poco::Util::IniFileConfiguration(input.path(';')))
    {
    }

    /// From the keys that are known: listing those of one section walks all entries of the file.
    Facts facts() const
    {
        Facts found;
        Poco::Util::AbstractConfiguration::Keys sections;
        mConfig->keys(sections);
        found.sections = sections.size();
        for (const auto& [section, key] : mInput.keys()) {
            found.add(key, mConfig->getRawString(section + "." + key));
        }
        return found;
    }
    bool has(const Key& key) const { return mConfig->has(key.first + "." + key.second); }

private:
    const Input& mInput;
    Poco::AutoPtr<Poco::Util::IniFileConfiguration> mConfig;
};
#endif

/// Bytes that the process holds from the allocator.
double heldBytes()
{
#if defined(__GLIBC__) && __GLIBC_PREREQ(2, 33)
    const auto info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
#else
    return 0;
#endif
}

/// What a piece of work takes.
struct Spent
{
    double seconds; // of processor time
    double bytes;   // held behind it
};

template <typename Work>
Spent spentOn(Work work)
{
    const double before = heldBytes();
    const std::clock_t begin = std::clock();
    work();
    const std::clock_t end = std::clock();
    return {static_cast<double>(end - begin) / CLOCKS_PER_SEC, heldBytes() - before};
}

#ifdef HAVE_FORK
/// What `work` says that it spent, in a child whose memory is as it was before anything was read: as in a tool, which
/// reads its configuration once, and writes it once at most.
template <typename Work>
Spent inChild(Work work)
{
    std::array<int, 2> ends{};
    prove(pipe(ends.data()) == 0);
    const pid_t child = fork();
    if (child == 0) {
        const Spent spent = work();
        _exit(::write(ends[1], &spent, sizeof spent) == sizeof spent ? 0 : 1);
    }
    close(ends[1]);
    Spent spent{};
    prove(::read(ends[0], &spent, sizeof spent) == sizeof spent);
    close(ends[0]);
    prove(waitpid(child, nullptr, 0) == child);
    return spent;
}

template <typename Peer>
Spent readOnce()
{
    std::optional<Peer> peer;
    const Spent spent = spentOn([&] { peer.emplace(large()); });
    prove(peer->facts() == large().facts());
    return spent;
}

template <typename Peer>
void readFirst(benchmark::State& state)
{
    large();
    for (auto _ : state) {
        const Spent spent = inChild(readOnce<Peer>);
        state.SetIterationTime(spent.seconds);
        state.counters["held/size"] = spent.bytes / large().size();
    }
}

/// Into a new file.
template <typename Peer>
Spent writeOnce()
{
    const Peer peer(large());
    return spentOn([&] { peer.write(large().target()); });
}

template <typename Peer>
void writeFirst(benchmark::State& state)
{
    large();
    for (auto _ : state) {
        std::filesystem::remove(large().target());
        state.SetIterationTime(inChild(writeOnce<Peer>).seconds);
    }
    const auto size = static_cast<double>(std::filesystem::file_size(large().target()));
    prove(size > 0.5 * large().size() && size < 1.1 * large().size()); // only GLib writes comments
    state.counters["written/size"] = size / large().size();
}
#endif

/// Again and again in one process, in memory that earlier rounds gave back.
template <typename Peer>
void readAndRelease(benchmark::State& state)
{
    prove(Peer(large()).facts() == large().facts());
    for (auto _ : state) {
        const Peer peer(large());
        benchmark::DoNotOptimize(&peer);
    }
}

/// All keys, one after the other, in no order.
template <typename Peer>
void lookUp(benchmark::State& state, const Input& input)
{
    const Peer peer(input);
    prove(peer.facts() == input.facts());
    for (auto _ : state) {
        for (const Key& key : input.keys()) {
            prove(peer.has(key));
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(input.keys().size()));
}

template <typename Peer>
void lookUpInLarge(benchmark::State& state)
{
    lookUp<Peer>(state, large());
}

template <typename Peer>
void lookUpInSmall(benchmark::State& state)
{
    lookUp<Peer>(state, small());
}

/// Calls `add` for each peer with its name.
template <typename Add>
void forEachPeer(Add add)
{
    add.template operator()<Kelvo>("<KelvoBase>");
    add.template operator()<Maps>("<Maps>");
#ifdef HAVE_GLIB
    add.template operator()<Glib>("<GLib>");
#endif
    add.template operator()<BoostIni>("<Boost>");
#ifdef HAVE_POCO
    add.template operator()<PocoIni>("<POCO>");
#endif
}

auto* add(const char* what, const char* peer, void (*function)(benchmark::State&))
{
    return benchmark::RegisterBenchmark((what + std::string(peer)).c_str(), function)->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char** argv)
{
#ifdef HAVE_FORK
    // In front of all that would leave traces in the memory of the children.
    forEachPeer([]<typename Peer>(const char* name) { add("readFirst", name, readFirst<Peer>)->UseManualTime(); });
    forEachPeer([]<typename Peer>(const char* name) {
        if constexpr (requires(const Peer& peer) { peer.write(""); }) {
            add("writeFirst", name, writeFirst<Peer>)->UseManualTime();
        }
    });
#endif
    forEachPeer([]<typename Peer>(const char* name) { add("readAndRelease", name, readAndRelease<Peer>); });
    forEachPeer([]<typename Peer>(const char* name) { add("lookUpInLarge", name, lookUpInLarge<Peer>); });
    forEachPeer([]<typename Peer>(const char* name) {
        add("lookUpInSmall", name, lookUpInSmall<Peer>)->Unit(benchmark::kMicrosecond);
    });
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
