#include "catalog_library.h"

#include <utility>

namespace protofix::tool {
namespace {

Converter ConverterOf(const Section& section, bool textMode) {
    return Converter(section.name, textMode, Settings());
}

// The library's answer, a JSON exception of it (a value of the wrong kind) as kRaised.
template <class Run>
Outcome Guarded(Run&& run) {
    try {
        return run() ? Outcome::kConverted : Outcome::kRefused;
    } catch (const Json::Exception&) {
        return Outcome::kRaised;
    }
}

// The table of the envelope when its result is true.
bool TableOf(const std::string& envelope, Json::Value& table) {
    bool result = false;
    Json::Value answered = EnvelopeTable(envelope, &result);
    if (result) table = std::move(answered);
    return result;
}

}  // namespace

// Serialize: the record to the table of the envelope the library answers.
Outcome Packet(const Section& section, const Bytes& record, Json::Value& table) {
    return Guarded([&] { return TableOf(ConverterOf(section, false).Packet(record), table); });
}

// Serialize --f5: the same of the F5 text.
Outcome PacketText(const Section& section, const std::string& f5, Json::Value& table) {
    return Guarded([&] { return TableOf(ConverterOf(section, true).PacketText(f5), table); });
}

// Deserialize: the table onto the record.
Outcome Parse(const Section& section, const Json::Value& table, Bytes& record) {
    const std::string text = Json::FastWriter().write(table);
    return Guarded([&] { return ConverterOf(section, false).Parse(text, record) == 1; });
}

// Deserialize --f5: the table merged into the F5 text, read back as a document. The buffer has
// room for any merge of an example.
Outcome Merge(const Section& section, const Json::Value& table, const std::string& f5,
              Json::Value& merged) {
    F5Buffer buffer(8 * f5.size() + 4096);
    buffer.Load(f5);
    const std::string text = Json::FastWriter().write(table);
    const Outcome outcome =
        Guarded([&] { return ConverterOf(section, true).Merge(text, buffer) == 1; });
    if (outcome != Outcome::kConverted) return outcome;
    Json::Reader reader;
    return reader.parse(buffer.Text(), merged, false) ? Outcome::kConverted : Outcome::kRefused;
}

}  // namespace protofix::tool
