#include "inputs.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <new>

namespace protofix::tool {
namespace {

// 1-based line and column (in bytes) of a byte offset into the text.
void LineAndColumn(const std::string& text, std::size_t offset, std::size_t& line,
                   std::size_t& column) {
    line = 1;
    column = 1;
    const std::size_t end = offset < text.size() ? offset : text.size();
    for (std::size_t i = 0; i < end; ++i) {
        if (text[i] == '\n') {
            ++line;
            column = 1;
        } else {
            ++column;
        }
    }
}

std::string Location(const std::string& text, std::size_t offset) {
    std::size_t line = 0;
    std::size_t column = 0;
    LineAndColumn(text, offset, line, column);
    return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

Failure TooLarge(const std::string& path, std::size_t limit) {
    return {kBadInput, DisplayName(path) + ": larger than the input limit of " + SizeText(limit) +
                           " (--max-input raises it)"};
}

// Reads the open file to its end, or until more than limit bytes have come.
bool ReadStream(std::FILE* file, const std::string& path, std::size_t limit, std::string& contents,
                Failure& failure) {
    std::vector<char> chunk(65536);
    std::size_t got = 0;
    while ((got = std::fread(chunk.data(), 1, chunk.size(), file)) > 0) {
        if (got > limit - std::min(limit, contents.size())) {
            failure = TooLarge(path, limit);
            return false;
        }
        contents.append(chunk.data(), got);
    }
    if (std::ferror(file) != 0) {
        failure = {kBadInput, DisplayName(path) + ": cannot read: " + std::strerror(errno)};
        return false;
    }
    return true;
}

}  // namespace

std::string DisplayName(const std::string& path) {
    return path == kStandardInput ? std::string("<stdin>") : path;
}

bool ReadInput(const std::string& path, std::size_t limit, std::string& contents,
               Failure& failure) {
    const bool standardInput = path == kStandardInput;
    if (standardInput && isatty(fileno(stdin)) != 0) {
        failure = {kBadInput,
                   "<stdin>: standard input is a terminal: give the file as an argument "
                   "or pipe it in (protofix --help shows the usage)"};
        return false;
    }
    // A FIFO is opened as a pipe is read: the open waits for its writer.
    std::FILE* file = standardInput ? stdin : std::fopen(path.c_str(), "rb");
    if (file == nullptr) {
        failure = {kBadInput, DisplayName(path) + ": cannot open: " + std::strerror(errno)};
        return false;
    }
    contents.clear();
    bool read = true;
    struct stat status {};
    if (fstat(fileno(file), &status) == 0 && S_ISREG(status.st_mode) &&
        static_cast<unsigned long long>(status.st_size) > limit) {
        failure = TooLarge(path, limit);
        read = false;
    } else if (S_ISDIR(status.st_mode)) {
        failure = {kBadInput, DisplayName(path) + ": is a directory"};
        read = false;
    } else {
        try {
            read = ReadStream(file, path, limit, contents, failure);
        } catch (const std::bad_alloc&) {
            failure = {kBadInput, DisplayName(path) + ": out of memory reading " +
                                      SizeText(contents.size()) + " of it"};
            read = false;
        }
    }
    if (!standardInput) (void)std::fclose(file);  // read only: nothing is lost on a failed close
    if (!read) {
        contents.clear();
        return false;
    }
    // A byte-order mark is no part of the text.
    static constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";
    if (contents.compare(0, 3, kByteOrderMark) == 0) contents.erase(0, 3);
    return true;
}

bool ParseSize(const std::string& option, const std::string& text, std::size_t max,
               std::size_t& size, Failure& failure) {
    const Failure wrong{kBadInput, option + " " + ShownValue(text) +
                                       ": expected a size in bytes such as 4096, 512k, 64M or 1G, "
                                       "at most " +
                                       SizeText(max)};
    std::size_t digits = 0;
    while (digits < text.size() && std::isdigit(static_cast<unsigned char>(text[digits])) != 0) {
        ++digits;
    }
    if (digits == 0 || digits > 12) {
        failure = wrong;
        return false;
    }
    unsigned long long value = std::stoull(text.substr(0, digits));
    std::string unit = text.substr(digits);
    if (!unit.empty() && (unit.back() == 'B' || unit.back() == 'b')) unit.pop_back();
    if (unit.size() == 2 && (unit[1] == 'i' || unit[1] == 'I')) unit.pop_back();
    const std::size_t power =
        unit.size() == 1 ? std::string("kmg").find(
                               static_cast<char>(std::tolower(static_cast<unsigned char>(unit[0]))))
                         : std::string::npos;
    if (!unit.empty() && power == std::string::npos) {
        failure = wrong;
        return false;
    }
    if (!unit.empty()) value <<= 10 * (power + 1);
    if (value > max) {
        failure = wrong;
        return false;
    }
    size = static_cast<std::size_t>(value);
    return true;
}

std::string ShownValue(const std::string& value) {
    const bool plain = !value.empty() && std::none_of(value.begin(), value.end(), [](char c) {
        return std::isspace(static_cast<unsigned char>(c)) != 0;
    });
    return plain ? value : "\"" + value + "\"";
}

std::string SizeText(std::size_t bytes) {
    static constexpr const char* kUnits[] = {"bytes", "KiB", "MiB", "GiB"};
    std::size_t unit = 0;
    std::size_t value = bytes;
    while (unit + 1 < std::size(kUnits) && value >= 1024 && value % 1024 == 0) {
        value /= 1024;
        ++unit;
    }
    return std::to_string(value) + " " + kUnits[unit];
}

bool ParseJsonText(const std::string& path, const std::string& text, Json::Value& value,
                   Failure& failure) {
    const std::size_t nul = text.find('\0');
    if (nul != std::string::npos) {
        failure = {kBadInput, DisplayName(path) + ": invalid JSON at " + Location(text, nul) +
                                  ": a NUL byte inside the text"};
        return false;
    }
    Json::Reader reader;
    try {
        if (reader.parse(text, value, false)) return true;
    } catch (const Json::Exception&) {
        failure = {kBadInput, DisplayName(path) +
                                  ": invalid JSON: nested deeper than the parser "
                                  "allows"};
        return false;
    }
    const std::vector<Json::Reader::StructuredError> errors = reader.getStructuredErrors();
    if (errors.empty()) {
        failure = {kBadInput, DisplayName(path) + ": invalid JSON"};
    } else {
        const auto offset = static_cast<std::size_t>(errors.front().offset_start);
        failure = {kBadInput, DisplayName(path) + ": invalid JSON at " + Location(text, offset) +
                                  ": " + OneLine(errors.front().message)};
    }
    return false;
}

bool ParseHexRecord(const std::string& path, const std::string& text, std::size_t size,
                    const char* recordName, std::vector<unsigned char>& bytes, Failure& failure) {
    static constexpr const char* kSpace = " \t\r\n\v\f";
    const Failure oddDigits{kBadInput,
                            DisplayName(path) + ": hex record: an odd number of hex digits"};
    bytes.clear();
    int high = -1;  // the first digit of a pair, while the second is awaited
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (std::strchr(kSpace, c) != nullptr && c != '\0') {
            if (high < 0) continue;
            failure = text.find_first_not_of(kSpace, i) == std::string::npos
                          ? oddDigits
                          : Failure{kBadInput, DisplayName(path) +
                                                   ": hex record: a byte split by white space at " +
                                                   Location(text, i)};
            return false;
        }
        const int digit = HexDigit(c);
        if (digit < 0) {
            failure = {kBadInput,
                       DisplayName(path) + ": hex record: not a hex digit at " + Location(text, i)};
            return false;
        }
        if (high < 0) {
            high = digit;
        } else {
            bytes.push_back(static_cast<unsigned char>(high * 16 + digit));
            high = -1;
        }
    }
    if (high >= 0) {
        failure = oddDigits;
        return false;
    }
    if (bytes.size() != size) {
        failure = {kBadInput, DisplayName(path) + ": hex record holds " +
                                  std::to_string(bytes.size()) + " bytes, " + recordName + " has " +
                                  std::to_string(size)};
        return false;
    }
    return true;
}

std::string FormatHex(const std::vector<unsigned char>& bytes) {
    static constexpr char kDigits[] = "0123456789abcdef";
    constexpr std::size_t kBytesPerLine = 32;
    std::string text;
    text.reserve(bytes.size() * 2 + bytes.size() / kBytesPerLine + 1);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        text += kDigits[bytes[i] >> 4];
        text += kDigits[bytes[i] & 0xF];
        if ((i + 1) % kBytesPerLine == 0 || i + 1 == bytes.size()) text += '\n';
    }
    return text;
}

std::string OneLine(std::string text) {
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r' || text.back() == ' ')) {
        text.pop_back();
    }
    for (char& c : text) {
        if (c == '\n' || c == '\r') c = ' ';
    }
    return text;
}

}  // namespace protofix::tool
