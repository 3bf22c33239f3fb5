// Every fixed position of the records: the device and the client library exchange them as bytes.
#include <protofix/protofix.h>

#include "layout_support.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>

namespace {

TEST(RecordLayout, NetworkRecords) {
    // clang-format off
    const layout::Position positions[] = {
        SIZE(KZ_NET_INTERFACE, 188),
        AT(KZ_NET_INTERFACE, ipAddress, 0), AT(KZ_NET_INTERFACE, subnetMask, 16),
        AT(KZ_NET_INTERFACE, defaultGateway, 32), AT(KZ_NET_INTERFACE, flags, 50),
        AT(KZ_NET_INTERFACE, isDefault, 51), AT(KZ_NET_INTERFACE, bondingMode, 92),
        AT(KZ_NET_INTERFACE, name, 124),
        SIZE(KZDEV_NETWORK_CFG, 36 + 188 * KZ_MAX_NET_INTERFACES),
        AT(KZDEV_NETWORK_CFG, hostName, 4), AT(KZDEV_NETWORK_CFG, interfaceCount, 32),
        AT(KZDEV_NETWORK_CFG, interfaces, 36),
        SIZE(KZDEV_DNS_CFG, 32), AT(KZDEV_DNS_CFG, secondaryDns, 16),
        SIZE(KZDEV_RTSP_CFG, 2), AT(KZDEV_RTSP_CFG, port, 0),
        SIZE(KZDEV_NET_CFG, 1972),
        AT(KZDEV_NET_CFG, maxConnections, 20), AT(KZDEV_NET_CFG, tcpPort, 22),
        AT(KZDEV_NET_CFG, udpPort, 24), AT(KZDEV_NET_CFG, httpPort, 26),
        AT(KZDEV_NET_CFG, sslPort, 30), AT(KZDEV_NET_CFG, multicastEnable, 1624),
        AT(KZDEV_NET_CFG, multicastPort, 1626), AT(KZDEV_NET_CFG, multicastAddress, 1628),
        AT(KZDEV_NET_CFG, pppoeEnable, 1856), AT(KZDEV_NET_CFG, pppoeUserName, 1876),
        AT(KZDEV_NET_CFG, pppoePassword, 1940),
        SIZE(KZDEV_IPV6_CFG, 212),
        AT(KZDEV_IPV6_CFG, ipAddress, 44), AT(KZDEV_IPV6_CFG, prefix, 84),
        AT(KZDEV_IPV6_CFG, defaultGateway, 88), AT(KZDEV_IPV6_CFG, dhcpEnable, 128),
        AT(KZDEV_IPV6_CFG, preferredDns, 129), AT(KZDEV_IPV6_CFG, alternateDns, 169),
    };
    // clang-format on
    layout::ExpectPositions(positions);
}

TEST(RecordLayout, AlarmRecords) {
    // clang-format off
    const layout::Position positions[] = {
        SIZE(tagKZ_TSECT, 28), AT(tagKZ_TSECT, endSecond, 24),
        SIZE(KZ_PTZ_LINK, 8), AT(KZ_PTZ_LINK, value, 4),
        SIZE(KZ_MSG_HANDLE_EX, 956),
        AT(KZ_MSG_HANDLE_EX, actionFlags, 4), AT(KZ_MSG_HANDLE_EX, alarmOutChannels, 8),
        AT(KZ_MSG_HANDLE_EX, alarmOutLatch, 40), AT(KZ_MSG_HANDLE_EX, recordChannels, 44),
        AT(KZ_MSG_HANDLE_EX, recordLatch, 76), AT(KZ_MSG_HANDLE_EX, snapshotChannels, 80),
        AT(KZ_MSG_HANDLE_EX, tourChannels, 112), AT(KZ_MSG_HANDLE_EX, ptzLinks, 144),
        AT(KZ_MSG_HANDLE_EX, eventLatch, 400), AT(KZ_MSG_HANDLE_EX, auxOutChannels, 404),
        AT(KZ_MSG_HANDLE_EX, messageToNet, 436), AT(KZ_MSG_HANDLE_EX, mmsEnable, 437),
        AT(KZ_MSG_HANDLE_EX, snapshotTimes, 438), AT(KZ_MSG_HANDLE_EX, matrixEnable, 439),
        AT(KZ_MSG_HANDLE_EX, matrixMask, 440), AT(KZ_MSG_HANDLE_EX, logEnable, 444),
        AT(KZ_MSG_HANDLE_EX, snapshotPeriod, 445), AT(KZ_MSG_HANDLE_EX, reservedBlock, 446),
        AT(KZ_MSG_HANDLE_EX, attachmentType, 478), AT(KZ_MSG_HANDLE_EX, attachmentMaxSize, 479),
        AT(KZ_MSG_HANDLE_EX, attachmentMaxTime, 480), AT(KZ_MSG_HANDLE_EX, reservedTail, 481),
        SIZE(KZ_MSG_HANDLE, 244),
        AT(KZ_MSG_HANDLE, alarmOutChannels, 8), AT(KZ_MSG_HANDLE, alarmOutLatch, 24),
        AT(KZ_MSG_HANDLE, recordChannels, 28), AT(KZ_MSG_HANDLE, recordLatch, 44),
        AT(KZ_MSG_HANDLE, snapshotChannels, 48), AT(KZ_MSG_HANDLE, tourChannels, 64),
        AT(KZ_MSG_HANDLE, ptzLinks, 80), AT(KZ_MSG_HANDLE, eventLatch, 208),
        AT(KZ_MSG_HANDLE, auxOutChannels, 212), AT(KZ_MSG_HANDLE, messageToNet, 228),
        AT(KZ_MSG_HANDLE, matrixEnable, 231), AT(KZ_MSG_HANDLE, matrixMask, 232),
        AT(KZ_MSG_HANDLE, logEnable, 236), AT(KZ_MSG_HANDLE, attachmentMaxTime, 240),
        SIZE(KZDEV_ALARMIN_CFG, 2136),
        AT(KZDEV_ALARMIN_CFG, enable, 1), AT(KZDEV_ALARMIN_CFG, timeSections, 4),
        AT(KZDEV_ALARMIN_CFG, handler, 1180),
        SIZE(KZDEV_AUTOMAINTAIN_CFG, 8),
        AT(KZDEV_AUTOMAINTAIN_CFG, byAutoRebootDay, 4),
        AT(KZDEV_AUTOMAINTAIN_CFG, byAutoRebootHour, 5),
        AT(KZDEV_AUTOMAINTAIN_CFG, byFileHoldTime, 6),
    };
    // clang-format on
    layout::ExpectPositions(positions);
}

// The records are exchanged as bytes: plain data, copied with memcpy.
static_assert(std::is_trivially_copyable_v<KZDEV_NETWORK_CFG> &&
              std::is_trivially_copyable_v<KZDEV_NET_CFG> &&
              std::is_trivially_copyable_v<KZ_MSG_HANDLE_EX> &&
              std::is_trivially_copyable_v<KZDEV_ALARMIN_CFG>);
static_assert(std::is_standard_layout_v<KZDEV_NETWORK_CFG> &&
              std::is_standard_layout_v<KZDEV_ALARMIN_CFG>);

}  // namespace
