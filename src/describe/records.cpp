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
    if constexpr (std::rank_v < Member >> 0) {
        shape.push_back(std::extent_v<Member>);
        AppendExtents<std::remove_extent_t<Member>>(shape);
    }
}

bool NamedReserved(std::string_view name) { return name.substr(0, 8) == "reserved"; }

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
    if constexpr (std::is_same_v<Element, char> && std::rank_v < Member >> 0) {
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
#define PROTOFIX_RECORD(Type, ...)                                                      \
    namespace protofix::describe {                                                      \
    namespace {                                                                         \
    template <>                                                                         \
    const Descriptor& DescriptorOf<Type>() {                                            \
        using Self = Type;                                                              \
        static const Descriptor descriptor = Build(#Type, sizeof(Self), {__VA_ARGS__}); \
        return descriptor;                                                              \
    }                                                                                   \
    }                                                                                   \
    }
#define PROTOFIX_FIELD(member) MakeField<decltype(Self::member)>(#member, offsetof(Self, member))
#define PROTOFIX_PAD(bytes) MakePadding(bytes)

// The descriptor blocks are laid out one field a line, as tables.
// clang-format off
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

PROTOFIX_RECORD(KZ_DDNS_SERVER,
                PROTOFIX_FIELD(leadingWord),
                PROTOFIX_FIELD(enable),
                PROTOFIX_FIELD(protocol),
                PROTOFIX_FIELD(address),
                PROTOFIX_FIELD(reserved1),
                PROTOFIX_FIELD(port),
                PROTOFIX_FIELD(hostName),
                PROTOFIX_FIELD(userName),
                PROTOFIX_FIELD(password),
                PROTOFIX_FIELD(keepAlive),
                PROTOFIX_FIELD(defaultHostNameInUse),
                PROTOFIX_FIELD(defaultHostName),
                PROTOFIX_FIELD(reserved2),
                PROTOFIX_FIELD(emailAddress),
                PROTOFIX_FIELD(reserved3))

PROTOFIX_RECORD(KZDEV_MULTI_DDNS_CFG,
                PROTOFIX_FIELD(leadingWord),
                PROTOFIX_FIELD(serverCount),
                PROTOFIX_FIELD(servers))

PROTOFIX_RECORD(KZDEV_IPIFILTER_CFG,
                PROTOFIX_FIELD(leadingWord),
                PROTOFIX_FIELD(enable),
                PROTOFIX_FIELD(listType),
                PROTOFIX_FIELD(bannedCount),
                PROTOFIX_FIELD(bannedAddresses),
                PROTOFIX_FIELD(reserved),
                PROTOFIX_FIELD(trustedCount),
                PROTOFIX_FIELD(trustedAddresses))

PROTOFIX_RECORD(KZDEV_MAIL_CFG,
                PROTOFIX_FIELD(address),
                PROTOFIX_FIELD(reserved1),
                PROTOFIX_FIELD(port),
                PROTOFIX_FIELD(reserved2),
                PROTOFIX_FIELD(sendAddress),
                PROTOFIX_FIELD(userName),
                PROTOFIX_FIELD(password),
                PROTOFIX_FIELD(receivers),
                PROTOFIX_FIELD(title),
                PROTOFIX_FIELD(enable),
                PROTOFIX_FIELD(secureMode),
                PROTOFIX_FIELD(sendInterval),
                PROTOFIX_FIELD(anonymous),
                PROTOFIX_FIELD(attachEnable))

PROTOFIX_RECORD(KZDEV_ALARMCENTER_CFG,
                PROTOFIX_FIELD(enable),
                PROTOFIX_FIELD(reserved),
                PROTOFIX_FIELD(port),
                PROTOFIX_FIELD(address),
                PROTOFIX_FIELD(reportEnable),
                PROTOFIX_FIELD(reportDay),
                PROTOFIX_FIELD(reportHour))

PROTOFIX_RECORD(KZDEV_NTP_CFG,
                PROTOFIX_FIELD(enable),
                PROTOFIX_FIELD(reserved),
                PROTOFIX_FIELD(port),
                PROTOFIX_FIELD(ipAddress),
                PROTOFIX_FIELD(domainName),
                PROTOFIX_FIELD(addressType),
                PROTOFIX_FIELD(updatePeriod),
                PROTOFIX_FIELD(timeZone))

PROTOFIX_RECORD(KZ_REGISTER_SERVER_ENTRY,
                PROTOFIX_FIELD(ipAddress),
                PROTOFIX_FIELD(port),
                PROTOFIX_FIELD(reserved),
                PROTOFIX_FIELD(addressKind),
                PROTOFIX_FIELD(domainName))

PROTOFIX_RECORD(KZDEV_REGISTER_SERVER,
                PROTOFIX_FIELD(leadingWord),
                PROTOFIX_FIELD(serverCount),
                PROTOFIX_FIELD(reserved),
                PROTOFIX_FIELD(servers),
                PROTOFIX_FIELD(enable),
                PROTOFIX_FIELD(deviceId),
                PROTOFIX_PAD(3))  // to the 4-byte alignment of the record

PROTOFIX_RECORD(KZDEV_TRANSFER_STRATEGY_CFG,
                PROTOFIX_FIELD(leadingWord),
                PROTOFIX_FIELD(enable),
                PROTOFIX_PAD(3),  // to the 4-byte alignment of strategy
                PROTOFIX_FIELD(strategy))

PROTOFIX_RECORD(KZ_REMOTE_DEVICE,
                PROTOFIX_FIELD(enable),
                PROTOFIX_FIELD(address),
                PROTOFIX_FIELD(reserved1),
                PROTOFIX_FIELD(port),
                PROTOFIX_FIELD(protocolType),
                PROTOFIX_FIELD(userName),
                PROTOFIX_FIELD(password),
                PROTOFIX_FIELD(name),
                PROTOFIX_FIELD(deviceClass),
                PROTOFIX_FIELD(reserved2))

PROTOFIX_RECORD(KZDEV_REMOTE_DEVICE_CFG,
                PROTOFIX_FIELD(deviceCount),
                PROTOFIX_FIELD(devices))

PROTOFIX_RECORD(KZDEV_WLAN_INFO,
                PROTOFIX_FIELD(disabled),
                PROTOFIX_FIELD(ssid),
                PROTOFIX_FIELD(linkMode),
                PROTOFIX_FIELD(encryption),
                PROTOFIX_FIELD(keyType),
                PROTOFIX_FIELD(keyId),
                PROTOFIX_FIELD(keys),
                PROTOFIX_FIELD(keyFlag))

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

PROTOFIX_RECORD(KZ_STORAGE_EVENT,
                PROTOFIX_FIELD(enable),
                PROTOFIX_FIELD(lowerLimit),
                PROTOFIX_PAD(2),  // to the 4-byte alignment of timeSections
                PROTOFIX_FIELD(timeSections),
                PROTOFIX_FIELD(handler))

PROTOFIX_RECORD(KZDEV_STORAGE_ALARM_CFG,
                PROTOFIX_FIELD(notExist),
                PROTOFIX_FIELD(lowSpace),
                PROTOFIX_FIELD(failure))

PROTOFIX_RECORD(KZDEV_NETABORT_CFG,
                PROTOFIX_FIELD(enable),
                PROTOFIX_PAD(3),  // to the 4-byte alignment of handler
                PROTOFIX_FIELD(handler))

PROTOFIX_RECORD(KZDEV_CONFLICT_CFG,
                PROTOFIX_FIELD(enable),
                PROTOFIX_PAD(3),  // to the 4-byte alignment of handler
                PROTOFIX_FIELD(handler))

PROTOFIX_RECORD(KZDEV_MOTION_DETECT_CFG,
                PROTOFIX_FIELD(enable),
                PROTOFIX_PAD(1),  // to the 2-byte alignment of level
                PROTOFIX_FIELD(level),
                PROTOFIX_FIELD(rows),
                PROTOFIX_FIELD(cols),
                PROTOFIX_FIELD(region),
                PROTOFIX_FIELD(timeSections),
                PROTOFIX_FIELD(handler))

PROTOFIX_RECORD(KZDEV_LOSS_DETECT_CFG,
                PROTOFIX_FIELD(enable),
                PROTOFIX_PAD(3),  // to the 4-byte alignment of timeSections
                PROTOFIX_FIELD(timeSections),
                PROTOFIX_FIELD(handler))

PROTOFIX_RECORD(KZDEV_BLIND_DETECT_CFG,
                PROTOFIX_FIELD(enable),
                PROTOFIX_FIELD(level),
                PROTOFIX_PAD(2),  // to the 4-byte alignment of timeSections
                PROTOFIX_FIELD(timeSections),
                PROTOFIX_FIELD(handler))

// ---- records/media.h

PROTOFIX_RECORD(KZ_VIDEOENC_OPT,
                PROTOFIX_FIELD(videoEnable),
                PROTOFIX_FIELD(bitRateControl),
                PROTOFIX_FIELD(fps),
                PROTOFIX_FIELD(compression),
                PROTOFIX_FIELD(imageSize),
                PROTOFIX_FIELD(quality),
                PROTOFIX_FIELD(bitRate),
                PROTOFIX_FIELD(audioEnable),
                PROTOFIX_FIELD(audioCompression),
                PROTOFIX_FIELD(reserved1),
                PROTOFIX_FIELD(depth),
                PROTOFIX_FIELD(reserved2),
                PROTOFIX_FIELD(profile),
                PROTOFIX_FIELD(frequency),
                PROTOFIX_FIELD(gop),
                PROTOFIX_FIELD(reserved3))

PROTOFIX_RECORD(KZDEV_ENCODE_CFG,
                PROTOFIX_FIELD(reserved1),
                PROTOFIX_FIELD(mainFormat),
                PROTOFIX_FIELD(extraFormat),
                PROTOFIX_FIELD(reserved2),
                PROTOFIX_FIELD(snapEnable),
                PROTOFIX_FIELD(reserved3),
                PROTOFIX_FIELD(snapFormat),
                PROTOFIX_FIELD(reserved4))

PROTOFIX_RECORD(KZ_VIDEO_COLOR,
                PROTOFIX_FIELD(timeSection),
                PROTOFIX_FIELD(brightness),
                PROTOFIX_FIELD(contrast),
                PROTOFIX_FIELD(saturation),
                PROTOFIX_FIELD(hue),
                PROTOFIX_FIELD(reserved))

PROTOFIX_RECORD(KZDEV_VIDEO_COLOR_CFG,
                PROTOFIX_FIELD(reserved),
                PROTOFIX_FIELD(color))

PROTOFIX_RECORD(KZDEV_VIDEOIN_OPTIONS_CFG,
                PROTOFIX_FIELD(reserved1),
                PROTOFIX_FIELD(exposureSpeed),
                PROTOFIX_FIELD(backlight),
                PROTOFIX_FIELD(reserved2),
                PROTOFIX_FIELD(mirror),
                PROTOFIX_FIELD(flip),
                PROTOFIX_FIELD(reserved3),
                PROTOFIX_FIELD(irisAuto),
                PROTOFIX_FIELD(whiteBalance),
                PROTOFIX_FIELD(signalFormat),
                PROTOFIX_FIELD(rotate90),
                PROTOFIX_FIELD(reserved4),
                PROTOFIX_FIELD(exposureValue1),
                PROTOFIX_FIELD(exposureValue2),
                PROTOFIX_FIELD(reserved5),
                PROTOFIX_FIELD(sunriseHour),
                PROTOFIX_FIELD(sunriseMinute),
                PROTOFIX_FIELD(sunriseSecond),
                PROTOFIX_FIELD(sunsetHour),
                PROTOFIX_FIELD(sunsetMinute),
                PROTOFIX_FIELD(sunsetSecond),
                PROTOFIX_FIELD(nightWhiteBalance),
                PROTOFIX_FIELD(nightGainRed),
                PROTOFIX_FIELD(nightGainBlue),
                PROTOFIX_FIELD(nightGainGreen),
                PROTOFIX_FIELD(nightGain),
                PROTOFIX_FIELD(nightGainAuto),
                PROTOFIX_FIELD(nightBrightnessThreshold),
                PROTOFIX_FIELD(nightReferenceLevel),
                PROTOFIX_FIELD(nightExposureSpeed),
                PROTOFIX_FIELD(nightExposureValue1),
                PROTOFIX_FIELD(nightExposureValue2),
                PROTOFIX_FIELD(reserved6),
                PROTOFIX_FIELD(nightWideDynamicRange),
                PROTOFIX_FIELD(reserved7),
                PROTOFIX_FIELD(gainRed),
                PROTOFIX_FIELD(gainBlue),
                PROTOFIX_FIELD(gainGreen),
                PROTOFIX_FIELD(flashMode),
                PROTOFIX_FIELD(flashValue),
                PROTOFIX_FIELD(flashPole),
                PROTOFIX_FIELD(externalSyncPhase),
                PROTOFIX_FIELD(flashPreValue),
                PROTOFIX_FIELD(externalSync),
                PROTOFIX_FIELD(reserved8),
                PROTOFIX_FIELD(wideDynamicRange),
                PROTOFIX_FIELD(reserved9))

PROTOFIX_RECORD(KZDEV_VIDEO_STANDARD_CFG,
                PROTOFIX_FIELD(videoStandard))

PROTOFIX_RECORD(KZDEV_MEDIA_GLOBAL_CFG,
                PROTOFIX_FIELD(reserved),
                PROTOFIX_FIELD(packetLength))


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

PROTOFIX_RECORD(KZDEV_RECORD_CFG,
                PROTOFIX_FIELD(nReserved),
                PROTOFIX_FIELD(stSect),
                PROTOFIX_FIELD(byPreRecord),
                PROTOFIX_FIELD(byReserved),
                PROTOFIX_FIELD(byVideoStream),
                PROTOFIX_FIELD(reserved))

PROTOFIX_RECORD(KZ_NAS_TSECT,
                PROTOFIX_FIELD(stSect),
                PROTOFIX_FIELD(byFlag0),
                PROTOFIX_FIELD(byFlag1),
                PROTOFIX_FIELD(byFlag2),
                PROTOFIX_FIELD(reserved))

PROTOFIX_RECORD(KZDEV_NAS_CFG,
                PROTOFIX_FIELD(leadingWord),
                PROTOFIX_FIELD(bEnable),
                PROTOFIX_FIELD(szAddress),
                PROTOFIX_PAD(1),  // to the 2-byte alignment of wPort
                PROTOFIX_FIELD(wPort),
                PROTOFIX_FIELD(szDirectory),
                PROTOFIX_FIELD(szUserName),
                PROTOFIX_FIELD(szPassword),
                PROTOFIX_FIELD(nFileLength),
                PROTOFIX_FIELD(nInterval),
                PROTOFIX_FIELD(stChnTime),
                PROTOFIX_FIELD(byProtocol),
                PROTOFIX_FIELD(reserved),
                PROTOFIX_FIELD(szSubDirectory))

PROTOFIX_RECORD(KZDEV_STORAGEGROUP_CFG,
                PROTOFIX_FIELD(leadingWord),
                PROTOFIX_FIELD(byOverWrite),
                PROTOFIX_FIELD(reserved))


// ---- records/device.h

PROTOFIX_RECORD(KZDEV_GENERAL_CFG,
                PROTOFIX_FIELD(szMachineName),
                PROTOFIX_FIELD(szMachineAddress),
                PROTOFIX_FIELD(reserved1),
                PROTOFIX_FIELD(wLocalNo),
                PROTOFIX_FIELD(reserved2))

PROTOFIX_RECORD(KZ_DST_POINT,
                PROTOFIX_FIELD(nYear),
                PROTOFIX_FIELD(nMonth),
                PROTOFIX_FIELD(nHour),
                PROTOFIX_FIELD(nMinute),
                PROTOFIX_FIELD(nWeek),
                PROTOFIX_FIELD(nDay),
                PROTOFIX_FIELD(reserved))

PROTOFIX_RECORD(KZDEV_LOCALES_CFG,
                PROTOFIX_FIELD(leadingWords),
                PROTOFIX_FIELD(stDSTStart),
                PROTOFIX_FIELD(stDSTEnd),
                PROTOFIX_FIELD(reserved1),
                PROTOFIX_FIELD(bDSTEnable),
                PROTOFIX_FIELD(reserved2),
                PROTOFIX_FIELD(byDateFormat),
                PROTOFIX_FIELD(reserved3),
                PROTOFIX_FIELD(byTimeFormat),
                PROTOFIX_FIELD(byLanguage),
                PROTOFIX_FIELD(reserved4))

PROTOFIX_RECORD(KZ_SERIAL_ATTR,
                PROTOFIX_FIELD(byDataBits),
                PROTOFIX_FIELD(byStopBits),
                PROTOFIX_FIELD(byParity),
                PROTOFIX_FIELD(byBaudRate),
                PROTOFIX_FIELD(byProtocol),
                PROTOFIX_FIELD(byReserved),
                PROTOFIX_FIELD(byAddress),
                PROTOFIX_FIELD(byNumberInMatrix))

PROTOFIX_RECORD(KZDEV_COMM_CFG,
                PROTOFIX_FIELD(leadingWord),
                PROTOFIX_FIELD(nProtocolNum),
                PROTOFIX_FIELD(szProtocolName),
                PROTOFIX_FIELD(nPortNum),
                PROTOFIX_FIELD(stAttr))

PROTOFIX_RECORD(KZDEV_PTZ_CFG,
                PROTOFIX_FIELD(leadingWord),
                PROTOFIX_FIELD(nProtocolNum),
                PROTOFIX_FIELD(szProtocolName),
                PROTOFIX_FIELD(stAttr))

PROTOFIX_RECORD(KZDEV_AUTOMAINTAIN_CFG,
                PROTOFIX_FIELD(leadingWord),
                PROTOFIX_FIELD(byAutoRebootDay),
                PROTOFIX_FIELD(byAutoRebootHour),
                PROTOFIX_FIELD(byFileHoldTime),
                PROTOFIX_FIELD(reserved))

// clang-format on
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
        &DescriptorOf<KZ_DDNS_SERVER>(),
        &DescriptorOf<KZDEV_MULTI_DDNS_CFG>(),
        &DescriptorOf<KZDEV_IPIFILTER_CFG>(),
        &DescriptorOf<KZDEV_MAIL_CFG>(),
        &DescriptorOf<KZDEV_ALARMCENTER_CFG>(),
        &DescriptorOf<KZDEV_NTP_CFG>(),
        &DescriptorOf<KZ_REGISTER_SERVER_ENTRY>(),
        &DescriptorOf<KZDEV_REGISTER_SERVER>(),
        &DescriptorOf<KZDEV_TRANSFER_STRATEGY_CFG>(),
        &DescriptorOf<KZ_REMOTE_DEVICE>(),
        &DescriptorOf<KZDEV_REMOTE_DEVICE_CFG>(),
        &DescriptorOf<KZDEV_WLAN_INFO>(),
        // records/alarm.h
        &DescriptorOf<tagKZ_TSECT>(),
        &DescriptorOf<KZ_PTZ_LINK>(),
        &DescriptorOf<KZ_MSG_HANDLE_EX>(),
        &DescriptorOf<KZ_MSG_HANDLE>(),
        &DescriptorOf<KZDEV_ALARMIN_CFG>(),
        &DescriptorOf<KZ_STORAGE_EVENT>(),
        &DescriptorOf<KZDEV_STORAGE_ALARM_CFG>(),
        &DescriptorOf<KZDEV_NETABORT_CFG>(),
        &DescriptorOf<KZDEV_CONFLICT_CFG>(),
        &DescriptorOf<KZDEV_MOTION_DETECT_CFG>(),
        &DescriptorOf<KZDEV_LOSS_DETECT_CFG>(),
        &DescriptorOf<KZDEV_BLIND_DETECT_CFG>(),

        // records/media.h
        &DescriptorOf<KZ_VIDEOENC_OPT>(),
        &DescriptorOf<KZDEV_ENCODE_CFG>(),
        &DescriptorOf<KZ_VIDEO_COLOR>(),
        &DescriptorOf<KZDEV_VIDEO_COLOR_CFG>(),
        &DescriptorOf<KZDEV_VIDEOIN_OPTIONS_CFG>(),
        &DescriptorOf<KZDEV_VIDEO_STANDARD_CFG>(),
        &DescriptorOf<KZDEV_MEDIA_GLOBAL_CFG>(),

        // records/overlay.h
        &DescriptorOf<KZ_CHANNEL_TITLE>(),
        &DescriptorOf<KZ_OSD_TITLE>(),
        &DescriptorOf<KZDEV_VIDEOWIDGET_OSD_CFG>(),
        &DescriptorOf<KZ_COVER>(),
        &DescriptorOf<KZDEV_VIDEOWIDGET_COVER_CFG>(),
        &DescriptorOf<KZDEV_VIDEOWIDGET_CHANNEL_CFG>(),
        &DescriptorOf<KZDEV_WATERMARK_CFG>(),

        // records/storage.h
        &DescriptorOf<KZDEV_RECORD_CFG>(),
        &DescriptorOf<KZ_NAS_TSECT>(),
        &DescriptorOf<KZDEV_NAS_CFG>(),
        &DescriptorOf<KZDEV_STORAGEGROUP_CFG>(),

        // records/device.h
        &DescriptorOf<KZDEV_GENERAL_CFG>(),
        &DescriptorOf<KZ_DST_POINT>(),
        &DescriptorOf<KZDEV_LOCALES_CFG>(),
        &DescriptorOf<KZDEV_AUTOMAINTAIN_CFG>(),
        &DescriptorOf<KZ_SERIAL_ATTR>(),
        &DescriptorOf<KZDEV_COMM_CFG>(),
        &DescriptorOf<KZDEV_PTZ_CFG>(),
    };
    return all;
}

}  // namespace protofix::describe
