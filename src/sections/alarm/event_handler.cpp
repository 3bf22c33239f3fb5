// The event linkage: what the device does when an event fires, between the linkage record, the
// table's "EventHandler" object and the "EventHandler" object of the F5 text.
#include "request/fields.h"

#include <protofix/ReqConfigProtocolFix.h>

#include <cstddef>
#include <cstring>
#include <string>

namespace {

using protofix::Narrow;

constexpr int kChannels = KZ_MSG_HANDLE_EX_CHANNELS;
// The binary Parse path takes snapshot channels 0 to 15 only, although Packet writes all 32.
constexpr int kSnapshotChannelsRead = KZ_MSG_HANDLE_CHANNELS;

// PTZ action names by type code; exact case both ways.
constexpr const char* kPtzTypes[] = {"None", "Preset", "Tour", "Pattern"};
constexpr int kPtzTypeCount = static_cast<int>(sizeof kPtzTypes / sizeof kPtzTypes[0]);

// The flags that the table and the F5 text both carry as plain on/off values, in their order.
struct FlagKeys {
    const char* table;
    const char* f5;
};
constexpr FlagKeys kF5Flags[] = {
    {"TipEnable", "TipEn"},   {"MailEnable", "MailEn"},     {"MessageEnable", "MessageToNetEn"},
    {"BeepEnable", "BeepEn"}, {"VoiceEnable", "VoiceEn"},   {"LogEnable", "LogEn"},
    {"MMSEnable", "MMSEn"},   {"MatrixEnable", "MatrixEn"},
};

// ---- reading JSON without creating members -----------------------------------------------------

using protofix::Element;
using protofix::Member;

// Calls visit(element, index) for each element of an array; a value of another kind has none.
template <class Visit>
void ForEachElement(const Json::Value& list, Visit&& visit) {
    if (!list.isArray()) return;
    for (Json::ArrayIndex i = 0; i < list.size(); ++i) visit(list[i], i);
}

// ---- record to table ---------------------------------------------------------------------------

Json::Value Bit(unsigned int flags, unsigned int mask) { return Json::Value((flags & mask) != 0); }

// Appends to parent[key] the number of every channel whose byte is 1; no key when none is.
template <std::size_t N>
void PutChannels(Json::Value& parent, const char* key, const unsigned char (&channels)[N]) {
    for (std::size_t i = 0; i < N; ++i) {
        if (channels[i] == 1) parent[key].append(protofix::UInt(static_cast<unsigned int>(i)));
    }
}

// Entries of type 0 are skipped. An unknown type code keeps the name of the entry written before
// it (empty before the first) and is still written.
void PutPtzLinks(Json::Value& handler, const KZ_PTZ_LINK (&links)[kChannels]) {
    std::string type;
    for (int i = 0; i < kChannels; ++i) {
        const KZ_PTZ_LINK& link = links[i];
        if (link.type == KZ_PTZ_LINK_NONE) continue;
        if (link.type > 0 && link.type < kPtzTypeCount) type = kPtzTypes[link.type];
        Json::Value entry(Json::arrayValue);
        entry.append(type);
        entry.append(protofix::Int(link.value));
        entry.append(protofix::Int(0));
        entry.append(protofix::Int(0));
        entry.append(protofix::UInt(static_cast<unsigned int>(i)));
        handler["PtzLink"].append(entry);
    }
}

void PutMailDetail(Json::Value& detail, const KZ_MSG_HANDLE_EX& rec) {
    if (rec.attachmentType == 0) detail["AttachmentType"] = "picture";
    if (rec.attachmentType == 1) detail["AttachmentType"] = "video";
    detail["MaxSize"] = protofix::Int(rec.attachmentMaxSize * 1024);
    detail["MaxTimeLength"] = protofix::Int(rec.attachmentMaxTime);
}

// ---- table to record ---------------------------------------------------------------------------

// Bool-guarded reads: a value that is not a JSON bool leaves the field as it was.
void ReadBitIfBool(const Json::Value& v, unsigned int& flags, unsigned int mask) {
    if (v.isBool()) protofix::SetBits(flags, mask, v.asBool());
}

void ReadByteIfBool(const Json::Value& v, unsigned char& field) {
    if (v.isBool()) field = v.asBool() ? 1 : 0;
}

// Clears the first Count channel bytes, then sets those the list names below Count. Only the
// upper bound is the device's; a negative number is ignored as well.
template <int Count, std::size_t N>
void ReadChannels(const Json::Value& list, unsigned char (&channels)[N]) {
    static_assert(Count > 0 && static_cast<std::size_t>(Count) <= N, "channels within the array");
    std::memset(channels, 0, static_cast<std::size_t>(Count));
    ForEachElement(list, [&](const Json::Value& element, Json::ArrayIndex) {
        const int channel = element.asInt();
        if (channel >= 0 && channel < Count) channels[channel] = 1;
    });
}

int PtzTypeCode(const std::string& name) {
    for (int code = 0; code < kPtzTypeCount; ++code) {
        if (name == kPtzTypes[code]) return code;
    }
    return KZ_PTZ_LINK_NONE;
}

// The current type, value and channel persist from element to element: an element that lacks one
// of them reuses the one before. A later element for the same channel overwrites an earlier one.
// An element that is not an array is passed over: lacking all three, it could only write again
// what is already there.
void ReadPtzLinks(const Json::Value& list, KZ_PTZ_LINK (&links)[kChannels]) {
    std::memset(links, 0, sizeof links);
    std::string type;
    int value = 0;
    int channel = 0;
    ForEachElement(list, [&](const Json::Value& element, Json::ArrayIndex) {
        if (!element.isArray()) return;
        if (element[0].isString()) type = element[0].asString();
        if (element[1].isInt()) value = element[1].asInt();
        if (element[4].isInt()) channel = element[4].asInt();
        if (channel < 0 || channel >= kChannels) return;
        links[channel].type = PtzTypeCode(type);
        links[channel].value = value;
    });
}

void ReadMailDetail(const Json::Value& detail, KZ_MSG_HANDLE_EX& rec) {
    const Json::Value& type = Member(detail, "AttachmentType");
    if (type.isString()) {
        if (protofix::SameWord(type.asString(), "video")) {
            rec.attachmentType = 1;
        } else if (protofix::SameWord(type.asString(), "picture")) {
            rec.attachmentType = 0;
        }
    }
    const Json::Value& maxSize = Member(detail, "MaxSize");
    if (protofix::Present(maxSize)) {
        rec.attachmentMaxSize = Narrow<unsigned char>(maxSize.asInt() / 1024);
    }
    protofix::ReadInt(Member(detail, "MaxTimeLength"), rec.attachmentMaxTime);
}

// ---- F5 text to table --------------------------------------------------------------------------

// An F5 on/off value is on exactly when it is the integer 1.
Json::Value F5On(const Json::Value& v) { return Json::Value(v.asInt() == 1); }

// Appends to parent[key] the index of every element of the F5 list whose "En" is 1; the key is
// not created when none is.
void AppendF5Channels(const Json::Value& f5List, Json::Value& parent, const char* key) {
    ForEachElement(f5List, [&](const Json::Value& element, Json::ArrayIndex i) {
        if (Member(element, "En").asInt() == 1) parent[key].append(protofix::UInt(i));
    });
}

// An F5 list with elements replaces parent[key], an empty array when none is on.
void ResetFromF5Channels(const Json::Value& f5List, Json::Value& parent, const char* key) {
    if (!f5List.isArray() || f5List.empty()) return;
    parent[key] = Json::Value(Json::arrayValue);
    AppendF5Channels(f5List, parent, key);
}

// A "None" entry is kept as the type alone, so the table array stays aligned with the F5 one; an
// entry whose type is not a string leaves its position unwritten.
void PutF5PtzLinks(const Json::Value& f5List, Json::Value& handler) {
    ForEachElement(f5List, [&](const Json::Value& element, Json::ArrayIndex i) {
        const Json::Value& type = Member(element, "Type");
        if (!type.isString()) return;
        Json::Value& entry = handler["PtzLink"][i];
        entry[0] = type;
        if (type.asString() == kPtzTypes[KZ_PTZ_LINK_NONE]) {
            entry[1] = protofix::Int(0);
            return;
        }
        const Json::Value& value = Member(element, "Value");
        if (value.isInt()) entry[1] = protofix::Int(value.asInt());
        entry[2] = protofix::Int(0);
        entry[3] = protofix::Int(0);
        entry[4] = protofix::UInt(i);
    });
}

// ---- table into the F5 text --------------------------------------------------------------------

// F5 on/off values are the integers 1 and 0.
Json::Value F5Int(const Json::Value& v) { return protofix::Int(v.asBool() ? 1 : 0); }

// The F5 array under key when the device's text has one; the document is never given a member it
// did not have.
Json::Value* F5Array(Json::Value& f5, const char* key) {
    if (!f5.isMember(key)) return nullptr;
    Json::Value& list = f5[key];
    return list.isArray() ? &list : nullptr;
}

Json::ArrayIndex LengthOf(const Json::Value* list) { return list != nullptr ? list->size() : 0; }

// Writes member = value into an element of an F5 array; an element of another kind than an
// object is left alone.
void SetInElement(Json::Value& element, const char* member, const Json::Value& value) {
    if (protofix::IsObjectOrNull(element)) element[member] = value;
}

// Every element's "En" of the F5 list becomes 0, then 1 for each channel of the table's list
// below the F5 list's length (a channel number compared as unsigned, so a negative one is ignored).
void PutF5Channels(const Json::Value& channels, Json::Value& f5, const char* key) {
    Json::Value* list = F5Array(f5, key);
    const Json::ArrayIndex length = LengthOf(list);
    for (Json::ArrayIndex i = 0; i < length; ++i) SetInElement((*list)[i], "En", protofix::Int(0));
    ForEachElement(channels, [&](const Json::Value& element, Json::ArrayIndex) {
        const auto channel =
            static_cast<Json::ArrayIndex>(static_cast<unsigned int>(element.asInt()));
        if (channel < length) SetInElement((*list)[channel], "En", protofix::Int(1));
    });
}

// The reset pass runs once per F5 element but always writes the element whose index is the number
// of the table's alarm-output channels, growing the F5 array when that index is past its end.
void ResetF5PtzLinks(const Json::Value& handler, Json::Value& f5) {
    Json::Value* list = F5Array(f5, "PtzLink");
    const Json::ArrayIndex passes = LengthOf(list);
    const Json::Value& alarmOut = Member(handler, "AlarmOutChannels");
    const Json::ArrayIndex index = alarmOut.isArray() ? alarmOut.size() : 0;
    for (Json::ArrayIndex pass = 0; pass < passes; ++pass) {
        SetInElement((*list)[index], "Type", Json::Value(kPtzTypes[KZ_PTZ_LINK_NONE]));
        SetInElement((*list)[index], "Value", protofix::Int(0));
    }
}

// Type, value and channel persist from element to element; elements shorter than five are
// skipped. The type is written as given.
void PutF5PtzLinksFromTable(const Json::Value& links, Json::Value& f5) {
    Json::Value* list = F5Array(f5, "PtzLink");
    std::string type;
    int value = 0;
    int channel = 0;
    ForEachElement(links, [&](const Json::Value& element, Json::ArrayIndex) {
        if (!element.isArray() || element.size() < 5) return;
        if (element[0].isString()) type = element[0].asString();
        if (element[1].isInt()) value = element[1].asInt();
        if (element[4].isInt()) channel = element[4].asInt();
        const auto index = static_cast<Json::ArrayIndex>(static_cast<unsigned int>(channel));
        if (index >= LengthOf(list)) return;
        SetInElement((*list)[index], "Type", Json::Value(type));
        SetInElement((*list)[index], "Value", protofix::Int(value));
    });
}

}  // namespace

int CReqConfigProtocolFix::Packet_EventHandler_Binary(Json::Value& handler, KZ_MSG_HANDLE_EX* rec) {
    if (rec == nullptr || !protofix::IsObjectOrNull(handler)) return -1;
    const unsigned int flags = rec->actionFlags;
    handler["RecordEnable"] = Bit(flags, EVENT_ACTION_RECORD);
    PutChannels(handler, "RecordChannels", rec->recordChannels);
    handler["RecordLatch"] = protofix::Int(rec->recordLatch);
    handler["Dejitter"] = protofix::Int(rec->eventLatch);

    handler["AlarmOutEnable"] = Bit(flags, EVENT_ACTION_ALARMOUT);
    PutChannels(handler, "AlarmOutChannels", rec->alarmOutChannels);
    handler["AlarmOutLatch"] = protofix::Int(rec->alarmOutLatch);

    handler["PtzLinkEnable"] = Bit(flags, EVENT_ACTION_PTZ);
    PutPtzLinks(handler, rec->ptzLinks);

    handler["SnapshotEnable"] = Bit(flags, EVENT_ACTION_SNAPSHOT);
    PutChannels(handler, "SnapshotChannels", rec->snapshotChannels);
    handler["SnapshotPeriod"] = protofix::Int(rec->snapshotPeriod);

    handler["TipEnable"] = Bit(flags, EVENT_ACTION_TIP);
    handler["MailEnable"] = Bit(flags, EVENT_ACTION_MAIL);
    PutMailDetail(handler["MailDetail"], *rec);

    handler["MessageEnable"] = protofix::Flag(rec->messageToNet);
    handler["BeepEnable"] = Bit(flags, EVENT_ACTION_BEEP);
    handler["VoiceEnable"] = Bit(flags, EVENT_ACTION_VOICE);
    handler["MatrixEnable"] = protofix::Flag(rec->matrixEnable);
    handler["LogEnable"] = protofix::Flag(rec->logEnable);
    handler["MMSEnable"] = protofix::Flag(rec->mmsEnable);

    Json::Value& tour = handler["MonitorTour"][0];
    tour["Enable"] = Bit(flags, EVENT_ACTION_TOUR);
    PutChannels(tour, "Channels", rec->tourChannels);
    return -1;
}

int CReqConfigProtocolFix::Parse_EventHandler_Binary(Json::Value& handler, KZ_MSG_HANDLE_EX* rec) {
    if (rec == nullptr) return -1;
    const Json::Value& table = handler;
    unsigned int& flags = rec->actionFlags;
    ReadBitIfBool(Member(table, "RecordEnable"), flags, EVENT_ACTION_RECORD);
    ReadChannels<kChannels>(Member(table, "RecordChannels"), rec->recordChannels);
    protofix::ReadInt(Member(table, "RecordLatch"), rec->recordLatch);
    protofix::ReadInt(Member(table, "Dejitter"), rec->eventLatch);

    ReadBitIfBool(Member(table, "AlarmOutEnable"), flags, EVENT_ACTION_ALARMOUT);
    ReadChannels<kChannels>(Member(table, "AlarmOutChannels"), rec->alarmOutChannels);
    protofix::ReadInt(Member(table, "AlarmOutLatch"), rec->alarmOutLatch);

    ReadBitIfBool(Member(table, "PtzLinkEnable"), flags, EVENT_ACTION_PTZ);
    ReadPtzLinks(Member(table, "PtzLink"), rec->ptzLinks);

    ReadBitIfBool(Member(table, "SnapshotEnable"), flags, EVENT_ACTION_SNAPSHOT);
    ReadChannels<kSnapshotChannelsRead>(Member(table, "SnapshotChannels"), rec->snapshotChannels);
    protofix::ReadInt(Member(table, "SnapshotPeriod"), rec->snapshotPeriod);

    ReadBitIfBool(Member(table, "TipEnable"), flags, EVENT_ACTION_TIP);
    ReadBitIfBool(Member(table, "MailEnable"), flags, EVENT_ACTION_MAIL);
    if (protofix::Present(Member(table, "MailDetail")))
        ReadMailDetail(Member(table, "MailDetail"), *rec);

    ReadByteIfBool(Member(table, "MessageEnable"), rec->messageToNet);
    ReadBitIfBool(Member(table, "BeepEnable"), flags, EVENT_ACTION_BEEP);
    ReadBitIfBool(Member(table, "VoiceEnable"), flags, EVENT_ACTION_VOICE);
    ReadByteIfBool(Member(table, "LogEnable"), rec->logEnable);
    ReadByteIfBool(Member(table, "MMSEnable"), rec->mmsEnable);

    // Without a "MonitorTour" array the tour keeps its channels.
    if (Member(table, "MonitorTour").isArray()) {
        const Json::Value& tour = Element(Member(table, "MonitorTour"), 0);
        ReadBitIfBool(Member(tour, "Enable"), flags, EVENT_ACTION_TOUR);
        ReadChannels<kChannels>(Member(tour, "Channels"), rec->tourChannels);
    }
    ReadByteIfBool(Member(table, "MatrixEnable"), rec->matrixEnable);
    return -1;
}

int CReqConfigProtocolFix::Packet_EventHandler_F5(Json::Value& handler, const Json::Value& f5) {
    if (!protofix::IsObjectOrNull(handler)) return -1;
    handler["TimeSection"] = Member(f5, "TimeSection");
    handler["RecordEnable"] = F5On(Member(f5, "RecordEn"));
    ResetFromF5Channels(Member(f5, "Record"), handler, "RecordChannels");
    handler["RecordLatch"] = Member(f5, "RecordLatch");

    handler["AlarmOutEnable"] = F5On(Member(f5, "AlarmOutEn"));
    ResetFromF5Channels(Member(f5, "AlarmOut"), handler, "AlarmOutChannels");
    handler["AlarmOutLatch"] = Member(f5, "AlarmOutLatch");

    handler["PtzLinkEnable"] = F5On(Member(f5, "PtzLinkEn"));
    PutF5PtzLinks(Member(f5, "PtzLink"), handler);

    // Unlike the record and alarm-output lists, the snapshot and tour lists are not reset first.
    handler["SnapshotEnable"] = F5On(Member(f5, "SnapshotEn"));
    AppendF5Channels(Member(f5, "Snapshot"), handler, "SnapshotChannels");
    handler["SnapshotPeriod"] = Member(f5, "SnapshotPeriod");
    handler["SnapshotTimes"] = Member(f5, "SnapshotTimes");

    for (const FlagKeys& keys : kF5Flags) handler[keys.table] = F5On(Member(f5, keys.f5));

    handler["Dejitter"] = protofix::Int(Member(f5, "EventLatch").asInt());
    Json::Value& tour = handler["MonitorTour"][0];
    tour["Enable"] = F5On(Member(f5, "TourEn"));
    AppendF5Channels(Member(f5, "Tour"), tour, "Channels");
    return -1;
}

int CReqConfigProtocolFix::Parse_EventHandler_F5(const Json::Value& handler, Json::Value& f5) {
    // The device's own object of another kind is kept as it is.
    if (!protofix::IsObjectOrNull(f5)) return -1;
    f5["TimeSection"] = Member(handler, "TimeSection");
    f5["RecordEn"] = F5Int(Member(handler, "RecordEnable"));
    PutF5Channels(Member(handler, "RecordChannels"), f5, "Record");
    f5["RecordLatch"] = Member(handler, "RecordLatch");

    f5["AlarmOutEn"] = F5Int(Member(handler, "AlarmOutEnable"));
    PutF5Channels(Member(handler, "AlarmOutChannels"), f5, "AlarmOut");
    f5["AlarmOutLatch"] = Member(handler, "AlarmOutLatch");

    f5["PtzLinkEn"] = F5Int(Member(handler, "PtzLinkEnable"));
    ResetF5PtzLinks(handler, f5);
    PutF5PtzLinksFromTable(Member(handler, "PtzLink"), f5);

    f5["SnapshotEn"] = F5Int(Member(handler, "SnapshotEnable"));
    PutF5Channels(Member(handler, "SnapshotChannels"), f5, "Snapshot");
    f5["SnapshotPeriod"] = Member(handler, "SnapshotPeriod");
    f5["SnapshotTimes"] = Member(handler, "SnapshotTimes");

    for (const FlagKeys& keys : kF5Flags) f5[keys.f5] = F5Int(Member(handler, keys.table));

    f5["EventLatch"] = protofix::Int(Member(handler, "Dejitter").asInt());

    // Without a "MonitorTour" array the F5 tour keys stay as the device gave them.
    if (Member(handler, "MonitorTour").isArray()) {
        const Json::Value& tour = Element(Member(handler, "MonitorTour"), 0);
        f5["TourEn"] = F5Int(Member(tour, "Enable"));
        PutF5Channels(Member(tour, "Channels"), f5, "Tour");
    }
    return -1;
}

namespace {

// Copies the first 16 channels of each channel array and the shared scalar fields; the PTZ links
// are not carried either way.
template <class From, class To>
void CopyLinkage(const From& from, To& to) {
    constexpr std::size_t kCarried = KZ_MSG_HANDLE_CHANNELS;
    to.actionMask = from.actionMask;
    to.actionFlags = from.actionFlags;
    to.alarmOutLatch = from.alarmOutLatch;
    to.recordLatch = from.recordLatch;
    to.eventLatch = from.eventLatch;
    to.matrixMask = from.matrixMask;
    std::memcpy(to.alarmOutChannels, from.alarmOutChannels, kCarried);
    std::memcpy(to.recordChannels, from.recordChannels, kCarried);
    std::memcpy(to.snapshotChannels, from.snapshotChannels, kCarried);
    std::memcpy(to.tourChannels, from.tourChannels, kCarried);
    std::memcpy(to.auxOutChannels, from.auxOutChannels, kCarried);
    to.messageToNet = from.messageToNet;
    to.mmsEnable = from.mmsEnable;
    to.snapshotTimes = from.snapshotTimes;
    to.matrixEnable = from.matrixEnable;
    to.logEnable = from.logEnable;
    to.snapshotPeriod = from.snapshotPeriod;
    to.attachmentType = from.attachmentType;
    to.attachmentMaxSize = from.attachmentMaxSize;
    to.attachmentMaxTime = from.attachmentMaxTime;
}

}  // namespace

void CReqConfigProtocolFix::Binary_HandleExToHandle(const KZ_MSG_HANDLE_EX& from,
                                                    KZ_MSG_HANDLE& to) {
    CopyLinkage(from, to);
}

void CReqConfigProtocolFix::Binary_HandleToHandleEx(const KZ_MSG_HANDLE& from,
                                                    KZ_MSG_HANDLE_EX& to) {
    CopyLinkage(from, to);
}
