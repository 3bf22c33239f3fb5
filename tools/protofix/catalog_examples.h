// A section's example files as the catalog reads them: where one is, whether it is there, and one
// read as JSON, as a record or as lines.
#ifndef PROTOFIX_TOOL_CATALOG_EXAMPLES_H
#define PROTOFIX_TOOL_CATALOG_EXAMPLES_H

#include "inputs.h"
#include "library.h"

#include <describe/describe.h>

#include <json/json.h>

#include <string>
#include <vector>

namespace protofix::tool {

// The path of an example file ("alarm.table.json") in the examples directory.
std::string ExamplePath(const std::string& examplesDir, const std::string& file);

// Whether the file is there to be read.
bool FileExists(const std::string& path);

// The file's text, and the value it holds.
bool ReadJsonFile(const std::string& path, std::string& text, Json::Value& value, Failure& failure);

// The fields that a record's named-field view names, written onto the record's bytes.
bool ReadRecord(const std::string& path, const protofix::describe::Descriptor& descriptor,
                Bytes& record, Failure& failure);

// The file's lines, each without its line end ("\n" or "\r\n").
bool ReadLines(const std::string& path, std::vector<std::string>& lines, Failure& failure);

}  // namespace protofix::tool

#endif
