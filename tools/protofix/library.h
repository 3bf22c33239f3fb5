// The library as the tool calls it: one section of CReqConfigProtocolFix run in record or text
// mode with the request options of a job, on buffers the tool owns.
#ifndef PROTOFIX_TOOL_LIBRARY_H
#define PROTOFIX_TOOL_LIBRARY_H

#include "job.h"

#include <cstddef>
#include <string>
#include <vector>

namespace protofix::tool {

using Bytes = std::vector<unsigned char>;

// The caller's F5 buffer: allocated once at its capacity; each merge starts from the F5 text
// loaded into it again.
class F5Buffer {
public:
    explicit F5Buffer(std::size_t capacity) : m_bytes(capacity, 0) {}
    // The text and its NUL; the text must fit.
    void Load(const std::string& text);
    // The text in the buffer: up to its NUL, never past its end (the capacity rule may leave
    // none).
    std::string Text() const;
    std::size_t Capacity() const { return m_bytes.size(); }
    unsigned char* Data() { return m_bytes.data(); }

private:
    Bytes m_bytes;
};

// The request options of one run.
struct Settings {
    int channel = 0;
    unsigned int id = 0;
    int standard = PROTOFIX_STANDARD_PAL;
    int subMode = 0;
    const std::string* current = nullptr;  // the device's current reply, or none

    static Settings Of(const Job& job);
    // The same run without one option ("--channel", ...): its default instead.
    Settings WithDefault(const std::string& option) const;
};

// One section run through the library. The library's exceptions pass.
class Converter {
public:
    Converter(const char* name, bool textMode, const Settings& settings)
        : m_name(name), m_textMode(textMode), m_settings(settings) {}

    // Serialize of a record (the bytes at the record's size) or of an F5 text: the envelope, or
    // "" when the library gave none.
    std::string Packet(const Bytes& record) const;
    std::string PacketText(const std::string& f5) const;
    // Deserialize of a table onto a record, or merged into the F5 text in the buffer.
    int Parse(const std::string& table, Bytes& record) const;
    int Merge(const std::string& table, F5Buffer& buffer) const;

    Converter WithDefault(const std::string& option) const {
        return Converter(m_name, m_textMode, m_settings.WithDefault(option));
    }

private:
    PROTOCOL_FIX_INFO Info() const;
    std::string Serialize(PROTOCOL_FIX_INFO& info) const;
    int Deserialize(const std::string& table, PROTOCOL_FIX_INFO& info) const;

    const char* m_name;
    bool m_textMode;
    Settings m_settings;
};

// The table of an envelope ("params"."table"), and whether its "result" is true; null when the
// text is not an envelope.
Json::Value EnvelopeTable(const std::string& envelope, bool* result = nullptr);

}  // namespace protofix::tool

#endif
