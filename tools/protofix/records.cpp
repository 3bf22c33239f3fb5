#include "records.h"

#include "view_format.h"

#include <cctype>

namespace protofix::tool {
namespace {

// A record given in hex starts with a hex digit; a named-field view, being a JSON object, never
// does.
bool LooksLikeHex(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    return first != std::string::npos && std::isxdigit(static_cast<unsigned char>(text[first]));
}

}  // namespace

const describe::Descriptor* ViewOf(const Section& section, Failure& failure) {
    const describe::Descriptor* descriptor = describe::FindDescriptor(section.record);
    if (descriptor == nullptr) {
        failure = {kBadInput, std::string("record ") + section.record + " of section " +
                                  section.name + " has no named-field view; use --hex"};
    }
    return descriptor;
}

bool ApplyRecord(const Section& section, const Source& source, bool hexOnly, Bytes& record,
                 Failure& failure) {
    if (hexOnly || LooksLikeHex(source.text)) {
        return ParseHexRecord(source.name, source.text, record.size(), section.record, record,
                              failure);
    }
    const describe::Descriptor* descriptor = ViewOf(section, failure);
    Json::Value view;
    if (descriptor == nullptr || !ParseSource(source, view, failure)) {
        return false;
    }
    std::string error;
    if (!describe::FromJson(*descriptor, view, record.data(), error)) {
        failure = {kBadInput,
                   source.name + ": not a view of " + section.record + ": " + OneLine(error)};
        return false;
    }
    return true;
}

Json::Value RecordView(const Section& section, const Bytes& record, bool raw,
                       const std::vector<std::string>& without) {
    const describe::Descriptor* descriptor = describe::FindDescriptor(section.record);
    if (descriptor == nullptr) return Json::Value();
    const auto style = raw ? describe::TimeSections::Raw : describe::TimeSections::Text;
    Json::Value view = describe::ToJson(*descriptor, record.data(), style);
    for (const std::string& field : without) view.removeMember(field);
    return view;
}

std::string PrintedRecord(const Section& section, const Bytes& record, const Job& job) {
    if (job.hex) return FormatHex(record);
    const describe::Descriptor* descriptor = describe::FindDescriptor(section.record);
    return FormatView(*descriptor, RecordView(section, record, job.raw, job.without), job.pretty);
}

}  // namespace protofix::tool
