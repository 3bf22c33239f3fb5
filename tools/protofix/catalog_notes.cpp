#include "catalog_notes.h"

#include "catalog_examples.h"

#include <cstddef>
#include <utility>

namespace protofix::tool {
namespace {

void AddLost(std::vector<LostLine>& lost, LostLine line) {
    if (line.field.empty() && !lost.empty() && lost.back().field.empty()) {
        lost.back().text += " " + line.text;
    } else {
        lost.push_back(std::move(line));
    }
}

bool ReadLost(const std::string& path, std::vector<LostLine>& lost, Failure& failure) {
    std::vector<std::string> lines;
    if (!ReadLines(path, lines, failure)) return false;
    for (const std::string& line : lines) {
        if (line.empty()) continue;
        if (line[0] == '#') {
            const std::size_t start = line.find_first_not_of("# ");
            AddLost(lost, {"", start == std::string::npos ? "" : line.substr(start)});
            continue;
        }
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos) {
            failure = {kBadInput,
                       path + ": a line is neither \"field: why\" nor a comment: " + line};
            return false;
        }
        const std::size_t start = line.find_first_not_of(' ', colon + 1);
        AddLost(lost,
                {line.substr(0, colon), start == std::string::npos ? "" : line.substr(start)});
    }
    return true;
}

}  // namespace

bool ReadNotes(const Section& section, const std::string& examplesDir, SectionNotes& notes,
               Failure& failure) {
    const std::string notesFile = LowerCaseName(section) + ".notes";
    if (FileExists(ExamplePath(examplesDir, notesFile))) {
        notes.notesFile = notesFile;
        if (!ReadLines(ExamplePath(examplesDir, notesFile), notes.notes, failure)) return false;
        while (!notes.notes.empty() && notes.notes.back().empty()) notes.notes.pop_back();
    }
    const std::string lostFile = LowerCaseName(section) + ".lost";
    if (FileExists(ExamplePath(examplesDir, lostFile))) {
        notes.lostFile = lostFile;
        if (!ReadLost(ExamplePath(examplesDir, lostFile), notes.lost, failure)) return false;
    }
    return true;
}

}  // namespace protofix::tool
