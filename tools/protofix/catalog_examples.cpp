#include "catalog_examples.h"

#include <fstream>
#include <sstream>

namespace protofix::tool {

std::string ExamplePath(const std::string& examplesDir, const std::string& file) {
    return examplesDir + "/" + file;
}

bool FileExists(const std::string& path) { return std::ifstream(path).good(); }

bool ReadJsonFile(const std::string& path, std::string& text, Json::Value& value,
                  Failure& failure) {
    return ReadInput(path, kDefaultMaxInput, text, failure) &&
           ParseJsonText(path, text, value, failure);
}

bool ReadRecord(const std::string& path, const protofix::describe::Descriptor& descriptor,
                Bytes& record, Failure& failure) {
    std::string text;
    Json::Value view;
    if (!ReadJsonFile(path, text, view, failure)) return false;
    std::string error;
    if (!protofix::describe::FromJson(descriptor, view, record.data(), error)) {
        failure = {kBadInput, path + ": not a view of " + descriptor.name + ": " + error};
        return false;
    }
    return true;
}

bool ReadLines(const std::string& path, std::vector<std::string>& lines, Failure& failure) {
    std::string text;
    if (!ReadInput(path, kDefaultMaxInput, text, failure)) return false;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(line);
    }
    return true;
}

}  // namespace protofix::tool
