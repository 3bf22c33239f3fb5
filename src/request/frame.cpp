// The request frame: the request information, the envelope and the dispatch over the sections.
#include "request/f5_text.h"
#include "request/fields.h"

#include <protofix/ReqConfigProtocolFix.h>

#include <climits>
#include <cstring>
#include <string>

CReqConfigProtocolFix::CReqConfigProtocolFix() : m_spare{0, 0} {
    std::memset(&m_info, 0, sizeof m_info);
}

CReqConfigProtocolFix::~CReqConfigProtocolFix() = default;

void CReqConfigProtocolFix::SetRequestInfo(const PROTOCOL_FIX_INFO& info) {
    std::memcpy(&m_info, &info, sizeof m_info);
}

int CReqConfigProtocolFix::Dispatch(Json::Value& table, bool toTable) {
    using Routine = int (CReqConfigProtocolFix::*)(Json::Value&);
    struct Section {
        const char* name;
        std::size_t length;  // of the name: only names of the caller's length are compared
        unsigned int modes;
        Routine packet;
        Routine parse;
    };
    static constexpr Section kSections[] = {
#define PROTOFIX_SECTION(name, suffix, record, modes)                        \
    {name, sizeof(name) - 1, modes, &CReqConfigProtocolFix::Packet_##suffix, \
     &CReqConfigProtocolFix::Parse_##suffix},
#include <protofix/sections.def>
    };

    if (m_info.name == nullptr) return 0;
    const std::size_t length = std::strlen(m_info.name);
    for (const Section& section : kSections) {
        if (section.length != length || !protofix::SameWord(m_info.name, section.name)) {
            continue;
        }
        // Every section refuses a mode it does not accept before it touches anything.
        const bool accepted =
            (m_info.mode == PROTOFIX_MODE_RECORD && (section.modes & PROTOFIX_ACCEPTS_RECORD)) ||
            (m_info.mode == PROTOFIX_MODE_TEXT && (section.modes & PROTOFIX_ACCEPTS_TEXT));
        if (!accepted) return -1;
        return (this->*(toTable ? section.packet : section.parse))(table);
    }
    return 0;
}

char* CReqConfigProtocolFix::Serialize(int& len) {
    Json::Value root;
    Json::Value& table = root["params"]["table"];
    const int ret = Dispatch(table, true);
    root["result"] = ret >= 1;
    root["channel"] = m_info.channel;
    root["id"] = static_cast<Json::UInt>(GetRequestId());

    Json::FastWriter writer;
    m_output = writer.write(root);
    // A text whose length the caller's int cannot hold counts as a failed write.
    if (m_output.size() > static_cast<std::size_t>(INT_MAX)) return nullptr;
    len = static_cast<int>(m_output.size());
    return m_output.data();
}

int CReqConfigProtocolFix::Deserialize(const char* text, int /*len: the text is NUL-terminated*/) {
    Json::Value root;
    if (!protofix::ParseText(text != nullptr ? text : "", root)) return 0;
    return Dispatch(root, false);
}
