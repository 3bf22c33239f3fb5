// The descriptor of every record, and the few templates that build one from the record's type.
//
// Adding a record: one block that lists its fields in offset order, then one line in
// AllDescriptors() at the end of this file.
//
//     PROTOFIX_RECORD(KZ_PTZ_LINK,
//                     PROTOFIX_FIELD(type),
//                     PROTOFIX_FIELD(value))
//
// A field's offset comes from offsetof, and its kind and array shape from the member's type:
// long long / int / short / char of either signedness -> Int64 ... UInt8 (an enum: its underlying
// type); float -> Float, double -> Double;
// char arrays -> Text (the last dimension is the width of one text); unsigned char fields named
// reserved* -> Reserved, one stretch of bytes; a nested struct -> Record, described by its own
// block, which must come earlier in this file. Bytes that the compiler inserts are listed where
// they fall, with PROTOFIX_PAD(bytes): they are never computed from the gaps, so that the
// coverage test fails when a field is forgotten. A member of any other type (pointer, union)
// stops the build.
#include "describe/describe.h"

#include <protofix/records/alarm.h>
#include <protofix/records/device.h>
#include <protofix/records/media.h>
#include <protofix/records/network.h>
#include <protofix/records/overlay.h>
#include <protofix/records/storage.h>

#include <cstddef>
#include <initializer_list>
#include <type_traits>

namespace protofix::describe {
namespace {

// The descriptor of one record type; each PROTOFIX_RECORD block defines one specialization.
template <class Record>
const Descriptor& DescriptorOf();

template <class Integer>
constexpr Kind IntegerKind() {
    static_assert(!std::is_same_v<Integer, bool>, "a record field of type bool has no kind");
    static_assert(sizeof(Integer) == 1 || sizeof(Integer) == 2 || sizeof(Integer) == 4 ||
                      sizeof(Integer) == 8,
                  "record integers are 8, 16, 32 or 64 bits wide");
    if constexpr (sizeof(Integer) == 1) {
        return std::is_signed_v<Integer> ? Kind::Int8 : Kind::UInt8;
    } else if constexpr (sizeof(Integer) == 2) {
        return std::is_signed_v<Integer> ? Kind::Int16 : Kind::UInt16;
    } else if constexpr (sizeof(Integer) == 4) {
        return std::is_signed_v<Integer> ? Kind::Int32 : Kind::UInt32;
    } else {
        return std::is_signed_v<Integer> ? Kind::Int64 : Kind::UInt64;
    }
}

template <class Member>
void AppendExtents(std::vector<std::size_t>& shape) {
    if constexpr (std::rank_v<Member> > 0) {
        shape.push_back(std::extent_v<Member>);
        AppendExtents<std::remove_extent_t<Member>>(shape);
    }
}

bool NamedReserved(std::string_view name) {
    return name.substr(0, 8) == "reserved";
}

// One named field, its kind and shape taken from the member's declared type.
template <class Member>
Field MakeField(const char* name, std::size_t offset) {
    using Element = std::remove_all_extents_t<Member>;
    Field field;
    field.name = name;
    field.offset = offset;
    field.size = sizeof(Member);
    field.elementSize = sizeof(Element);
    AppendExtents<Member>(field.shape);
    if constexpr (std::is_same_v<Element, char> && std::rank_v<Member> > 0) {
        // The innermost dimension is the width of one text.
        field.kind = Kind::Text;
        field.elementSize = field.shape.back();
        field.shape.pop_back();
    } else if constexpr (std::is_class_v<Element>) {
        field.kind = Kind::Record;
        field.record = &DescriptorOf<Element>();
    } else if constexpr (std::is_floating_point_v<Element>) {
        static_assert(sizeof(Element) == 4 || sizeof(Element) == 8, "float or double fields only");
        field.kind = sizeof(Element) == 4 ? Kind::Float : Kind::Double;
    } else if constexpr (std::is_enum_v<Element>) {
        field.kind = IntegerKind<std::underlying_type_t<Element>>();
    } else {
        static_assert(std::is_integral_v<Element>,
                      "a record field must be an integer, a char array or a nested record");
        field.kind = IntegerKind<Element>();
        if (std::is_same_v<Element, unsigned char> && NamedReserved(field.name)) {
            // One stretch of bytes, whatever its declared shape.
            field.kind = Kind::Reserved;
            field.shape = {field.size};
        }
    }
    return field;
}

// Compiler padding of the stated width; Build places it where the entry before it ends.
Field MakePadding(std::size_t bytes) {
    Field field;
    field.size = bytes;
    field.kind = Kind::Padding;
    field.elementSize = 1;
    field.shape = {bytes};
    return field;
}

Descriptor Build(const char* name, std::size_t size, std::initializer_list<Field> fields) {
    Descriptor descriptor{name, size, fields};
    std::size_t end = 0;
    for (Field& field : descriptor.fields) {
        if (field.kind == Kind::Padding) {
            field.offset = end;
        }
        end = field.offset + field.size;
    }
    return descriptor;
}

}  // namespace
}  // namespace protofix::describe

// The macros expand inside protofix::describe's unnamed namespace; PROTOFIX_FIELD and
// PROTOFIX_PAD are valid only within a PROTOFIX_RECORD block, where Self is the record.
#define PROTOFIX_RECORD(Type, ...)                                                   \
    namespace protofix::describe {                                                   \
    namespace {                                                                      \
    template <>                                                                      \
    const Descriptor& DescriptorOf<Type>() {                                         \
        using Self = Type;                                                           \
        static const Descriptor descriptor = Build(#Type, sizeof(Self), {__VA_ARGS__}); \
        return descriptor;                                                           \
    }                                                                                \
    }                                                                                \
    }
#define PROTOFIX_FIELD(member) MakeField<decltype(Self::member)>(#member, offsetof(Self, member))
#define PROTOFIX_PAD(bytes) MakePadding(bytes)

// ---- records/network.h

PROTOFIX_RECORD(KZ_NET_INTERFACE,
                PROTOFIX_FIELD(ipAddress),
                PROTOFIX_FIELD(subnetMask),
                PROTOFIX_FIELD(defaultGateway),
                PROTOFIX_FIELD(reserved1),
                PROTOFIX_FIELD(flags),
                PROTOFIX_FIELD(isDefault),
                PROTOFIX_FIELD(reserved2),
                PROTOFIX_FIELD(bondingMode),
                PROTOFIX_FIELD(reserved3),
                PROTOFIX_FIELD(name))

PROTOFIX_RECORD(KZDEV_NETWORK_CFG,
                PROTOFIX_FIELD(leadingWord),
                PROTOFIX_FIELD(hostName),
                PROTOFIX_FIELD(reserved),
                PROTOFIX_FIELD(interfaceCount),
                PROTOFIX_FIELD(interfaces))

PROTOFIX_RECORD(KZDEV_DNS_CFG,
                PROTOFIX_FIELD(primaryDns),
                PROTOFIX_FIELD(secondaryDns))

PROTOFIX_RECORD(KZDEV_RTSP_CFG,
                PROTOFIX_FIELD(port))

PROTOFIX_RECORD(KZDEV_NET_CFG,
                PROTOFIX_FIELD(reserved1),
                PROTOFIX_FIELD(maxConnections),
                PROTOFIX_FIELD(tcpPort),
                PROTOFIX_FIELD(udpPort),
                PROTOFIX_FIELD(httpPort),
                PROTOFIX_FIELD(reserved2),
                PROTOFIX_FIELD(sslPort),
                PROTOFIX_FIELD(reserved3),
                PROTOFIX_FIELD(multicastEnable),
                PROTOFIX_FIELD(reserved4),
                PROTOFIX_FIELD(multicastPort),
                PROTOFIX_FIELD(multicastAddress),
                PROTOFIX_FIELD(reserved5),
                PROTOFIX_FIELD(pppoeEnable),
                PROTOFIX_FIELD(reserved6),
                PROTOFIX_FIELD(pppoeUserName),
                PROTOFIX_FIELD(pppoePassword))

PROTOFIX_RECORD(KZDEV_IPV6_CFG,
                PROTOFIX_FIELD(linkLocalAddress),
                PROTOFIX_FIELD(ipAddress),
                PROTOFIX_FIELD(prefix),
                PROTOFIX_FIELD(defaultGateway),
                PROTOFIX_FIELD(dhcpEnable),
                PROTOFIX_FIELD(preferredDns),
                PROTOFIX_FIELD(alternateDns),
                PROTOFIX_PAD(3))  // to the 4-byte alignment of prefix

// ---- records/alarm.h

PROTOFIX_RECORD(tagKZ_TSECT,
                PROTOFIX_FIELD(enable),
                PROTOFIX_FIELD(beginHour),
                PROTOFIX_FIELD(beginMinute),
                PROTOFIX_FIELD(beginSecond),
                PROTOFIX_FIELD(endHour),
                PROTOFIX_FIELD(endMinute),
                PROTOFIX_FIELD(endSecond))

PROTOFIX_RECORD(KZ_PTZ_LINK,
                PROTOFIX_FIELD(type),
                PROTOFIX_FIELD(value))

PROTOFIX_RECORD(KZ_MSG_HANDLE_EX,
                PROTOFIX_FIELD(actionMask),
                PROTOFIX_FIELD(actionFlags),
                PROTOFIX_FIELD(alarmOutChannels),
                PROTOFIX_FIELD(alarmOutLatch),
                PROTOFIX_FIELD(recordChannels),
                PROTOFIX_FIELD(recordLatch),
                PROTOFIX_FIELD(snapshotChannels),
                PROTOFIX_FIELD(tourChannels),
                PROTOFIX_FIELD(ptzLinks),
                PROTOFIX_FIELD(eventLatch),
                PROTOFIX_FIELD(auxOutChannels),
                PROTOFIX_FIELD(messageToNet),
                PROTOFIX_FIELD(mmsEnable),
                PROTOFIX_FIELD(snapshotTimes),
                PROTOFIX_FIELD(matrixEnable),
                PROTOFIX_FIELD(matrixMask),
                PROTOFIX_FIELD(logEnable),
                PROTOFIX_FIELD(snapshotPeriod),
                PROTOFIX_FIELD(reservedBlock),
                PROTOFIX_FIELD(attachmentType),
                PROTOFIX_FIELD(attachmentMaxSize),
                PROTOFIX_FIELD(attachmentMaxTime),
                PROTOFIX_FIELD(reservedTail))

PROTOFIX_RECORD(KZ_MSG_HANDLE,
                PROTOFIX_FIELD(actionMask),
                PROTOFIX_FIELD(actionFlags),
                PROTOFIX_FIELD(alarmOutChannels),
                PROTOFIX_FIELD(alarmOutLatch),
                PROTOFIX_FIELD(recordChannels),
                PROTOFIX_FIELD(recordLatch),
                PROTOFIX_FIELD(snapshotChannels),
                PROTOFIX_FIELD(tourChannels),
                PROTOFIX_FIELD(ptzLinks),
                PROTOFIX_FIELD(eventLatch),
                PROTOFIX_FIELD(auxOutChannels),
                PROTOFIX_FIELD(messageToNet),
                PROTOFIX_FIELD(mmsEnable),
                PROTOFIX_FIELD(snapshotTimes),
                PROTOFIX_FIELD(matrixEnable),
                PROTOFIX_FIELD(matrixMask),
                PROTOFIX_FIELD(logEnable),
                PROTOFIX_FIELD(snapshotPeriod),
                PROTOFIX_FIELD(attachmentType),
                PROTOFIX_FIELD(attachmentMaxSize),
                PROTOFIX_FIELD(attachmentMaxTime),
                PROTOFIX_PAD(3))  // to the 4-byte alignment of the record

PROTOFIX_RECORD(KZDEV_ALARMIN_CFG,
                PROTOFIX_FIELD(sensorType),
                PROTOFIX_FIELD(enable),
                PROTOFIX_PAD(2),  // to the 4-byte alignment of timeSections
                PROTOFIX_FIELD(timeSections),
                PROTOFIX_FIELD(handler))

// ---- records/media.h


// ---- records/overlay.h

PROTOFIX_RECORD(KZ_CHANNEL_TITLE,
                PROTOFIX_FIELD(name))

PROTOFIX_RECORD(KZ_OSD_TITLE,
                PROTOFIX_FIELD(frontColor),
                PROTOFIX_FIELD(backColor),
                PROTOFIX_FIELD(rect),
                PROTOFIX_FIELD(previewBlend),
                PROTOFIX_FIELD(encodeBlend),
                PROTOFIX_FIELD(reserved),
                PROTOFIX_FIELD(text))

PROTOFIX_RECORD(KZDEV_VIDEOWIDGET_OSD_CFG,
                PROTOFIX_FIELD(reserved),
                PROTOFIX_FIELD(title))

PROTOFIX_RECORD(KZ_COVER,
                PROTOFIX_FIELD(rect),
                PROTOFIX_FIELD(frontColor),
                PROTOFIX_FIELD(reserved1),
                PROTOFIX_FIELD(encodeBlend),
                PROTOFIX_FIELD(previewBlend),
                PROTOFIX_FIELD(reserved2))

PROTOFIX_RECORD(KZDEV_VIDEOWIDGET_COVER_CFG,
                PROTOFIX_FIELD(reserved1),
                PROTOFIX_FIELD(maxCoverCount),
                PROTOFIX_FIELD(coverCount),
                PROTOFIX_FIELD(reserved2),
                PROTOFIX_FIELD(cover))

PROTOFIX_RECORD(KZDEV_VIDEOWIDGET_CHANNEL_CFG,
                PROTOFIX_FIELD(reserved1),
                PROTOFIX_FIELD(timeFrontColor),
                PROTOFIX_FIELD(timeBackColor),
                PROTOFIX_FIELD(timeRect),
                PROTOFIX_FIELD(timeEncodeBlend),
                PROTOFIX_FIELD(timeShowWeek),
                PROTOFIX_FIELD(reserved2),
                PROTOFIX_FIELD(titleFrontColor),
                PROTOFIX_FIELD(titleBackColor),
                PROTOFIX_FIELD(titleRect),
                PROTOFIX_FIELD(titleEncodeBlend),
                PROTOFIX_FIELD(reserved3))

PROTOFIX_RECORD(KZDEV_WATERMARK_CFG,
                PROTOFIX_FIELD(reserved1),
                PROTOFIX_FIELD(enable),
                PROTOFIX_FIELD(reserved2),
                PROTOFIX_FIELD(dataType),
                PROTOFIX_FIELD(string))


// ---- records/storage.h


// ---- records/device.h

PROTOFIX_RECORD(KZDEV_AUTOMAINTAIN_CFG,
                PROTOFIX_FIELD(leadingWord),
                PROTOFIX_FIELD(byAutoRebootDay),
                PROTOFIX_FIELD(byAutoRebootHour),
                PROTOFIX_FIELD(byFileHoldTime),
                PROTOFIX_FIELD(reserved))

#undef PROTOFIX_RECORD
#undef PROTOFIX_FIELD
#undef PROTOFIX_PAD

namespace protofix::describe {

const std::vector<const Descriptor*>& AllDescriptors() {
    static const std::vector<const Descriptor*> all = {
        // records/network.h
        &DescriptorOf<KZ_NET_INTERFACE>(),
        &DescriptorOf<KZDEV_NETWORK_CFG>(),
        &DescriptorOf<KZDEV_DNS_CFG>(),
        &DescriptorOf<KZDEV_RTSP_CFG>(),
        &DescriptorOf<KZDEV_NET_CFG>(),
        &DescriptorOf<KZDEV_IPV6_CFG>(),
        // records/alarm.h
        &DescriptorOf<tagKZ_TSECT>(),
        &DescriptorOf<KZ_PTZ_LINK>(),
        &DescriptorOf<KZ_MSG_HANDLE_EX>(),
        &DescriptorOf<KZ_MSG_HANDLE>(),
        &DescriptorOf<KZDEV_ALARMIN_CFG>(),

        // records/media.h


        // records/overlay.h
        &DescriptorOf<KZ_CHANNEL_TITLE>(),
        &DescriptorOf<KZ_OSD_TITLE>(),
        &DescriptorOf<KZDEV_VIDEOWIDGET_OSD_CFG>(),
        &DescriptorOf<KZ_COVER>(),
        &DescriptorOf<KZDEV_VIDEOWIDGET_COVER_CFG>(),
        &DescriptorOf<KZDEV_VIDEOWIDGET_CHANNEL_CFG>(),
        &DescriptorOf<KZDEV_WATERMARK_CFG>(),


        // records/storage.h


        // records/device.h
        &DescriptorOf<KZDEV_AUTOMAINTAIN_CFG>(),
    };
    return all;
}

}  // namespace protofix::describe
