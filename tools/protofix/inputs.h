// Reading the tool's inputs: files or standard input, JSON texts checked with their location, and
// records given as raw bytes in hex.
#ifndef PROTOFIX_TOOL_INPUTS_H
#define PROTOFIX_TOOL_INPUTS_H

#include <json/json.h>

#include <cstddef>
#include <string>
#include <vector>

namespace protofix::tool {

// Exit statuses of the tool.
enum Status : int {
    kConverted = 0,  // the section converted
    kRefused = 1,    // the section refused, or no section has the name
    kBadInput = 2,   // a usage or input error
};

// Why a step failed: the exit status and one line for standard error (no trailing newline).
struct Failure {
    Status status = kBadInput;
    std::string message;
};

// "-" is standard input.
constexpr const char* kStandardInput = "-";

// How a path shows in messages: the path itself, or "<stdin>".
std::string DisplayName(const std::string& path);

// The largest input read when --max-input is not given: 64 MiB.
constexpr std::size_t kDefaultMaxInput = std::size_t{64} << 20;

// The whole file (or standard input for "-") as bytes, without a leading UTF-8 byte-order mark.
// Standard input that is a terminal is refused rather than waited on. An input of more than
// limit bytes is refused: a regular file before it is read, a pipe, a FIFO or a device as soon
// as more than the limit has come.
bool ReadInput(const std::string& path, std::size_t limit, std::string& contents, Failure& failure);

// A size in bytes as the options give it: digits, optionally followed by k, M or G (powers of
// 1024) and an optional B ("64M", "512k", "1GB", "4096"). False, with failure naming the option,
// for anything else or a size above max.
bool ParseSize(const std::string& option, const std::string& text, std::size_t max,
               std::size_t& size, Failure& failure);

// An option's value as a message shows it: quoted when it is empty or holds a blank.
std::string ShownValue(const std::string& value);

// A size for messages: "64 MiB", "1536 bytes".
std::string SizeText(std::size_t bytes);

// Parses a JSON text the way the library does (Json::Reader, comments not collected). A text that
// does not parse fails with the line and column of the first error; so does a text holding a NUL
// byte, which the library would take as the end of the text.
bool ParseJsonText(const std::string& path, const std::string& text, Json::Value& value,
                   Failure& failure);

// Raw record bytes as hex digits, two per byte, whitespace anywhere between the pairs. The text
// must hold exactly `size` bytes.
bool ParseHexRecord(const std::string& path, const std::string& text, std::size_t size,
                    const char* recordName, std::vector<unsigned char>& bytes, Failure& failure);

// Lower-case hex digits, 32 bytes to a line, each line ended by a newline.
std::string FormatHex(const std::vector<unsigned char>& bytes);

// The message as one line: line breaks become spaces, trailing ones are dropped.
std::string OneLine(std::string text);

}  // namespace protofix::tool

#endif
