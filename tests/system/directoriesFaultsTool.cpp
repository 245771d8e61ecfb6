// Asks a scripted system for its directories, step by step. Further words say what that system has: library paths of
// directories and files, the program, the working directory, the folders of the user.

#include "support/FakePlatform.h"
#include "system/DirectoriesSteps.h"

#include <new>

namespace
{

using namespace KelvoBase;
using namespace KelvoBase::test;

std::string asked; // the paths that the library asked about

platform::EntryKind noteKind(const std::string& path)
{
    asked += (asked.empty() ? "" : ";") + path;
    const FakePlatform& fake = fakePlatform();
    if (fake.files.contains(path)) {
        return platform::EntryKind::file;
    }
    return fake.directories.contains(path) ? platform::EntryKind::directory : platform::EntryKind::missing;
}

/// A word that changes the scripted system.
std::function<std::string(const Step&)> script(const std::function<void(FakePlatform&, const Step&)>& change)
{
    return [change](const Step& step) { return change(fakePlatform(), step), step[0]; };
}

void setWorkingDirectory(FakePlatform& fake, const std::string& path, bool holdable)
{
    fake.workingDirectory = [path, holdable] { return platform::WorkingDirectory{path, holdable}; };
}

Answers placeWords()
{
    return {
        {"program", script([](FakePlatform& fake, const Step& step) { fake.programPath = step.at(1); })},
        {"no-program", script([](FakePlatform& fake, const Step&) { fake.programPath.reset(); })},
        {"dir", script([](FakePlatform& fake, const Step& step) { fake.directories.insert(step.at(1)); })},
        {"file", script([](FakePlatform& fake, const Step& step) { fake.files[step.at(1)] = 1; })},
        {"gone", script([](FakePlatform& fake, const Step& step) { fake.directories.erase(step.at(1)); })},
        {"cwd", script([](FakePlatform& fake, const Step& step) { setWorkingDirectory(fake, step.at(1), true); })},
        {"odd-cwd", script([](FakePlatform& fake, const Step& step) { setWorkingDirectory(fake, step.at(1), false); })},
        {"no-cwd",
         script([](FakePlatform& fake, const Step&) { fake.workingDirectory = [] { return std::nullopt; }; })},
        {"no-memory", script([](FakePlatform& fake, const Step&) {
             fake.workingDirectory = []() -> std::optional<platform::WorkingDirectory> { throw std::bad_alloc(); };
         })},
        {"asked", [](const Step&) { return std::exchange(asked, ""); }},
    };
}

Answers folderWords()
{
    return {
        {"no-folders", script([](FakePlatform& fake, const Step&) {
             fake.userFolder = [](platform::Folder) { return std::nullopt; };
         })},
        {"folder", script([](FakePlatform& fake, const Step& step) {
             fake.userFolder = [text = step.at(1)](platform::Folder) { return std::optional(text); };
         })},
        {"denied", script([](FakePlatform& fake, const Step&) {
             fake.makeDirectory = [](const std::string&) { return fakePlatform().fail(FakePlatform::accessDenied); };
         })},
    };
}

} // namespace

int main(int argc, char** argv)
{
    fakePlatform().entryKind = noteKind;
    Answers words = placeWords();
    words.merge(folderWords());
    return runSteps(argc, argv, words);
}
