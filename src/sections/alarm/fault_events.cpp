// Faults of the device itself: the three storage faults ("StorageNotExist", "StorageLowSpace",
// "StorageFailure", one block each of one shared record), "NetAbort", and the address conflicts
// "IPConflict" and "MacConflict" (whose record holds the older 16-channel linkage). Each is an
// enable flag and a linkage, in record mode and in F5 text mode.
#include "sections/alarm/event_sections.h"

#include <cstring>

using namespace protofix;
using namespace protofix::events;

namespace {

struct Fault {
    const char* member;                                // the section's member in the F5 text
    bool lowerLimit;                                   // carries "LowerLimit"
    KZ_STORAGE_EVENT KZDEV_STORAGE_ALARM_CFG::*block;  // the storage sections' own block
};

constexpr Fault kStorageNotExist{"StorageNotExist", false, &KZDEV_STORAGE_ALARM_CFG::notExist};
constexpr Fault kStorageLowSpace{"StorageLowSpace", true, &KZDEV_STORAGE_ALARM_CFG::lowSpace};
constexpr Fault kStorageFailure{"StorageFailure", false, &KZDEV_STORAGE_ALARM_CFG::failure};
constexpr Fault kNetAbort{"NetAbort", false, nullptr};
constexpr Fault kIPConflict{"IPConflict", false, nullptr};
constexpr Fault kMacConflict{"MacConflict", false, nullptr};

// ---- record mode -------------------------------------------------------------------------------
// Each step takes a record that is not null.

int PacketStorage(const Fault& fault, void* record, Json::Value& table) {
    KZ_STORAGE_EVENT& event = static_cast<KZDEV_STORAGE_ALARM_CFG*>(record)->*fault.block;
    table["Enable"] = Flag(event.enable);
    if (fault.lowerLimit) table["LowerLimit"] = Int(event.lowerLimit);
    Json::Value& handler = table["EventHandler"];
    PutSchedule(event.timeSections, handler);
    CReqConfigProtocolFix::Packet_EventHandler_Binary(handler, &event.handler);
    return 1;
}

// The time sections are read first, through creating accessors, so an object table always has an
// "EventHandler" by the time it is tested and the linkage (with its clears) runs.
int ParseStorage(const Fault& fault, void* record, Json::Value& table) {
    KZ_STORAGE_EVENT& event = static_cast<KZDEV_STORAGE_ALARM_CFG*>(record)->*fault.block;
    ReadBool(Member(table, "Enable"), event.enable);
    if (fault.lowerLimit) ReadInt(Member(table, "LowerLimit"), event.lowerLimit);
    ReadScheduleReaching(table, event.timeSections);
    const TableHandler handler(table);
    if (handler.present())
        CReqConfigProtocolFix::Parse_EventHandler_Binary(handler.get(), &event.handler);
    return 1;
}

int PacketNetAbort(const Fault&, void* record, Json::Value& table) {
    auto* cfg = static_cast<KZDEV_NETABORT_CFG*>(record);
    table["Enable"] = Flag(cfg->enable);
    CReqConfigProtocolFix::Packet_EventHandler_Binary(table["EventHandler"], &cfg->handler);
    return 1;
}

int ParseNetAbort(const Fault&, void* record, Json::Value& table) {
    auto* cfg = static_cast<KZDEV_NETABORT_CFG*>(record);
    ReadBool(Member(table, "Enable"), cfg->enable);
    const TableHandler handler(table);
    if (handler.present())
        CReqConfigProtocolFix::Parse_EventHandler_Binary(handler.get(), &cfg->handler);
    return 1;
}

// The older linkage record widened for the linkage conversions: its two action words, everything
// after them zero, then the rest of the older record over the first 16 channels. The PTZ links are
// not carried, so the table never names one and the older record's PTZ block is never written.
KZ_MSG_HANDLE_EX Widened(const KZ_MSG_HANDLE& older) {
    KZ_MSG_HANDLE_EX wide;
    std::memset(&wide, 0, sizeof wide);
    wide.actionMask = older.actionMask;
    wide.actionFlags = older.actionFlags;
    CReqConfigProtocolFix::Binary_HandleToHandleEx(older, wide);
    return wide;
}

int PacketConflict(const Fault&, void* record, Json::Value& table) {
    const auto* cfg = static_cast<KZDEV_CONFLICT_CFG*>(record);
    table["Enable"] = Flag(cfg->enable);
    KZ_MSG_HANDLE_EX wide = Widened(cfg->handler);
    CReqConfigProtocolFix::Packet_EventHandler_Binary(table["EventHandler"], &wide);
    return 1;
}

// The linkage parse runs whether or not the table has an "EventHandler": a table without one
// still clears the record, alarm-output and snapshot channels of the older record.
int ParseConflict(const Fault&, void* record, Json::Value& table) {
    auto* cfg = static_cast<KZDEV_CONFLICT_CFG*>(record);
    ReadBool(Member(table, "Enable"), cfg->enable);
    KZ_MSG_HANDLE_EX wide = Widened(cfg->handler);
    const TableHandler handler(table);
    CReqConfigProtocolFix::Parse_EventHandler_Binary(handler.get(), &wide);
    CReqConfigProtocolFix::Binary_HandleExToHandle(wide, cfg->handler);
    return 1;
}

// ---- both modes --------------------------------------------------------------------------------

using RecordStep = int (*)(const Fault&, void* record, Json::Value& table);

// The request's buffers hold the section's record in record mode and the device's F5 text in
// text mode (the dispatch has refused every other mode).
int PacketFault(const Fault& fault, RecordStep step, const PROTOCOL_FIX_INFO& info,
                Json::Value& table) {
    if (info.mode == PROTOFIX_MODE_TEXT) {
        return PacketF5Section(info, fault.member, table,
                               [&](const Json::Value& section, Json::Value& out) {
                                   if (fault.lowerLimit)
                                       out["LowerLimit"] = Member(section, "LowerLimit");
                               });
    }
    return info.input != nullptr ? step(fault, info.input, table) : -1;
}

int ParseFault(const Fault& fault, RecordStep step, const PROTOCOL_FIX_INFO& info,
               Json::Value& table) {
    if (info.mode == PROTOFIX_MODE_TEXT) {
        return MergeF5Section(info, fault.member, table,
                              [&](const Json::Value& in, Json::Value& document) {
                                  if (fault.lowerLimit)
                                      CopyToSection(in, document, fault.member, "LowerLimit");
                                  return true;
                              });
    }
    return info.output != nullptr ? step(fault, info.output, table) : -1;
}

}  // namespace

int CReqConfigProtocolFix::Packet_StorageNotExist(Json::Value& table) {
    return PacketFault(kStorageNotExist, PacketStorage, m_info, table);
}
int CReqConfigProtocolFix::Parse_StorageNotExist(Json::Value& table) {
    return ParseFault(kStorageNotExist, ParseStorage, m_info, table);
}
int CReqConfigProtocolFix::Packet_StorageLowSpace(Json::Value& table) {
    return PacketFault(kStorageLowSpace, PacketStorage, m_info, table);
}
int CReqConfigProtocolFix::Parse_StorageLowSpace(Json::Value& table) {
    return ParseFault(kStorageLowSpace, ParseStorage, m_info, table);
}
int CReqConfigProtocolFix::Packet_StorageFailure(Json::Value& table) {
    return PacketFault(kStorageFailure, PacketStorage, m_info, table);
}
int CReqConfigProtocolFix::Parse_StorageFailure(Json::Value& table) {
    return ParseFault(kStorageFailure, ParseStorage, m_info, table);
}
int CReqConfigProtocolFix::Packet_NetAbort(Json::Value& table) {
    return PacketFault(kNetAbort, PacketNetAbort, m_info, table);
}
int CReqConfigProtocolFix::Parse_NetAbort(Json::Value& table) {
    return ParseFault(kNetAbort, ParseNetAbort, m_info, table);
}
int CReqConfigProtocolFix::Packet_IPConflict(Json::Value& table) {
    return PacketFault(kIPConflict, PacketConflict, m_info, table);
}
int CReqConfigProtocolFix::Parse_IPConflict(Json::Value& table) {
    return ParseFault(kIPConflict, ParseConflict, m_info, table);
}
int CReqConfigProtocolFix::Packet_MacConflict(Json::Value& table) {
    return PacketFault(kMacConflict, PacketConflict, m_info, table);
}
int CReqConfigProtocolFix::Parse_MacConflict(Json::Value& table) {
    return ParseFault(kMacConflict, ParseConflict, m_info, table);
}
