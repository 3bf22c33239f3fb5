#include "library.h"

#include <protofix/protofix.h>

#include <algorithm>
#include <climits>
#include <cstring>

namespace protofix::tool {
namespace {

int ClampToInt(std::size_t n) {
    return n > static_cast<std::size_t>(INT_MAX) ? INT_MAX : static_cast<int>(n);
}

}  // namespace

void F5Buffer::Load(const std::string& text) {
    const std::size_t length = std::min(text.size(), m_bytes.size() - 1);
    std::memcpy(m_bytes.data(), text.data(), length);
    m_bytes[length] = 0;
}

std::string F5Buffer::Text() const {
    const auto* text = reinterpret_cast<const char*>(m_bytes.data());
    return std::string(text, strnlen(text, m_bytes.size()));
}

Settings Settings::Of(const Job& job) {
    Settings settings;
    settings.channel = job.channel;
    settings.id = job.id;
    settings.standard = job.standard;
    settings.subMode = job.subMode;
    settings.current = job.current.Given() ? &job.current.text : nullptr;
    return settings;
}

Settings Settings::WithDefault(const std::string& option) const {
    Settings settings = *this;
    const Settings defaults;
    if (option == "--channel") settings.channel = defaults.channel;
    if (option == "--id") settings.id = defaults.id;
    if (option == "--standard") settings.standard = defaults.standard;
    if (option == "--sub-mode") settings.subMode = defaults.subMode;
    if (option == "--current") settings.current = nullptr;
    return settings;
}

PROTOCOL_FIX_INFO Converter::Info() const {
    PROTOCOL_FIX_INFO info;
    std::memset(&info, 0, sizeof info);
    info.mode = m_textMode ? PROTOFIX_MODE_TEXT : PROTOFIX_MODE_RECORD;
    info.name = m_name;
    info.channel = m_settings.channel;
    info.videoStandard = m_settings.standard;
    info.subMode = m_settings.subMode;
    info.current = m_settings.current != nullptr ? m_settings.current->c_str() : nullptr;
    return info;
}

std::string Converter::Serialize(PROTOCOL_FIX_INFO& info) const {
    CReqConfigProtocolFix request;
    request.SetRequestId(m_settings.id);
    request.SetRequestInfo(info);
    int length = 0;
    const char* envelope = request.Serialize(length);
    return envelope != nullptr ? std::string(envelope, static_cast<std::size_t>(length))
                               : std::string();
}

int Converter::Deserialize(const std::string& table, PROTOCOL_FIX_INFO& info) const {
    CReqConfigProtocolFix request;
    request.SetRequestId(m_settings.id);
    request.SetRequestInfo(info);
    return request.Deserialize(table.c_str(), ClampToInt(table.size()));
}

std::string Converter::Packet(const Bytes& record) const {
    PROTOCOL_FIX_INFO info = Info();
    Bytes copy = record;  // the library may write its input record ("RemoteStorageLimit" does)
    info.input = copy.empty() ? nullptr : copy.data();
    info.inputLength = ClampToInt(copy.size());
    // "VideoInOptions" takes its record from the output slot on this side too.
    info.output = info.input;
    return Serialize(info);
}

std::string Converter::PacketText(const std::string& f5) const {
    PROTOCOL_FIX_INFO info = Info();
    std::string copy = f5;  // the request's input is not const
    info.input = copy.data();
    info.inputLength = ClampToInt(copy.size() + 1);
    return Serialize(info);
}

int Converter::Parse(const std::string& table, Bytes& record) const {
    PROTOCOL_FIX_INFO info = Info();
    info.output = record.empty() ? nullptr : record.data();
    info.outputLength = ClampToInt(record.size());
    return Deserialize(table, info);
}

int Converter::Merge(const std::string& table, F5Buffer& buffer) const {
    PROTOCOL_FIX_INFO info = Info();
    info.output = buffer.Data();
    info.outputLength = ClampToInt(buffer.Capacity());
    return Deserialize(table, info);
}

Json::Value EnvelopeTable(const std::string& envelope, bool* result) {
    Json::Value root;
    Json::Reader reader;
    if (!reader.parse(envelope, root, false) || !root.isObject()) return Json::Value();
    if (result != nullptr) *result = root["result"].isBool() && root["result"].asBool();
    Json::Value table;
    table.swap(root["params"]["table"]);
    return table;
}

}  // namespace protofix::tool
