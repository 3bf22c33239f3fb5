// Fixed positions of the service, private-protocol, remote-device and wireless records: the device
// and the client library exchange them as bytes.
#include <protofix/protofix.h>

#include "layout_support.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>

namespace {

TEST(RecordLayout, NetworkServiceRecords) {
    // clang-format off
    const layout::Position positions[] = {
        SIZE(KZ_DDNS_SERVER, 944),
        AT(KZ_DDNS_SERVER, enable, 4), AT(KZ_DDNS_SERVER, protocol, 5),
        AT(KZ_DDNS_SERVER, address, 37), AT(KZ_DDNS_SERVER, port, 296),
        AT(KZ_DDNS_SERVER, hostName, 300), AT(KZ_DDNS_SERVER, userName, 556),
        AT(KZ_DDNS_SERVER, password, 620), AT(KZ_DDNS_SERVER, keepAlive, 684),
        AT(KZ_DDNS_SERVER, defaultHostNameInUse, 688), AT(KZ_DDNS_SERVER, defaultHostName, 689),
        AT(KZ_DDNS_SERVER, emailAddress, 752), AT(KZ_DDNS_SERVER, reserved3, 816),
        SIZE(KZDEV_MULTI_DDNS_CFG, 8 + 10 * 944),
        AT(KZDEV_MULTI_DDNS_CFG, serverCount, 4), AT(KZDEV_MULTI_DDNS_CFG, servers, 8),

        SIZE(KZDEV_IPIFILTER_CFG, 16 + 512 * 16 + 32 + 4 + 512 * 16),
        AT(KZDEV_IPIFILTER_CFG, enable, 4), AT(KZDEV_IPIFILTER_CFG, listType, 8),
        AT(KZDEV_IPIFILTER_CFG, bannedCount, 12), AT(KZDEV_IPIFILTER_CFG, bannedAddresses, 16),
        AT(KZDEV_IPIFILTER_CFG, trustedCount, 16 + 512 * 16 + 32),
        AT(KZDEV_IPIFILTER_CFG, trustedAddresses, 16 + 512 * 16 + 36),

        SIZE(KZDEV_MAIL_CFG, 1228),
        AT(KZDEV_MAIL_CFG, port, 512), AT(KZDEV_MAIL_CFG, sendAddress, 518),
        AT(KZDEV_MAIL_CFG, userName, 646), AT(KZDEV_MAIL_CFG, password, 710),
        AT(KZDEV_MAIL_CFG, receivers, 774), AT(KZDEV_MAIL_CFG, title, 1158),
        AT(KZDEV_MAIL_CFG, enable, 1222), AT(KZDEV_MAIL_CFG, secureMode, 1223),
        AT(KZDEV_MAIL_CFG, sendInterval, 1224), AT(KZDEV_MAIL_CFG, anonymous, 1226),
        AT(KZDEV_MAIL_CFG, attachEnable, 1227),

        SIZE(KZDEV_ALARMCENTER_CFG, 32),
        AT(KZDEV_ALARMCENTER_CFG, port, 2), AT(KZDEV_ALARMCENTER_CFG, address, 4),
        AT(KZDEV_ALARMCENTER_CFG, reportEnable, 20), AT(KZDEV_ALARMCENTER_CFG, reportDay, 24),
        AT(KZDEV_ALARMCENTER_CFG, reportHour, 28),

        SIZE(KZDEV_NTP_CFG, 180),
        AT(KZDEV_NTP_CFG, port, 4), AT(KZDEV_NTP_CFG, ipAddress, 8),
        AT(KZDEV_NTP_CFG, domainName, 40), AT(KZDEV_NTP_CFG, addressType, 168),
        AT(KZDEV_NTP_CFG, updatePeriod, 172), AT(KZDEV_NTP_CFG, timeZone, 176),
    };
    // clang-format on
    layout::ExpectPositions(positions);
}

TEST(RecordLayout, PrivateProtocolAndWirelessRecords) {
    // clang-format off
    const layout::Position positions[] = {
        SIZE(KZ_REGISTER_SERVER_ENTRY, 100),
        AT(KZ_REGISTER_SERVER_ENTRY, port, 32), AT(KZ_REGISTER_SERVER_ENTRY, addressKind, 39),
        AT(KZ_REGISTER_SERVER_ENTRY, domainName, 40),
        SIZE(KZDEV_REGISTER_SERVER, 1044),
        AT(KZDEV_REGISTER_SERVER, serverCount, 4), AT(KZDEV_REGISTER_SERVER, servers, 8),
        AT(KZDEV_REGISTER_SERVER, enable, 1008), AT(KZDEV_REGISTER_SERVER, deviceId, 1009),

        SIZE(KZDEV_TRANSFER_STRATEGY_CFG, 12),
        AT(KZDEV_TRANSFER_STRATEGY_CFG, enable, 4), AT(KZDEV_TRANSFER_STRATEGY_CFG, strategy, 8),

        // The remote-device entry: the converted fields in their order, then room to 256 bytes.
        SIZE(KZ_REMOTE_DEVICE, 256),
        AT(KZ_REMOTE_DEVICE, enable, 0), AT(KZ_REMOTE_DEVICE, address, 1),
        AT(KZ_REMOTE_DEVICE, port, 68), AT(KZ_REMOTE_DEVICE, protocolType, 72),
        AT(KZ_REMOTE_DEVICE, userName, 76), AT(KZ_REMOTE_DEVICE, password, 92),
        AT(KZ_REMOTE_DEVICE, name, 108), AT(KZ_REMOTE_DEVICE, deviceClass, 140),
        AT(KZ_REMOTE_DEVICE, reserved2, 141),
        SIZE(KZDEV_REMOTE_DEVICE_CFG, 4 + 32 * 256), AT(KZDEV_REMOTE_DEVICE_CFG, devices, 4),

        SIZE(KZDEV_WLAN_INFO, 188),
        AT(KZDEV_WLAN_INFO, ssid, 4), AT(KZDEV_WLAN_INFO, linkMode, 40),
        AT(KZDEV_WLAN_INFO, encryption, 44), AT(KZDEV_WLAN_INFO, keyType, 48),
        AT(KZDEV_WLAN_INFO, keyId, 52), AT(KZDEV_WLAN_INFO, keys, 56),
        AT(KZDEV_WLAN_INFO, keyFlag, 184),
    };
    // clang-format on
    layout::ExpectPositions(positions);
}

static_assert(std::is_trivially_copyable_v<KZDEV_MULTI_DDNS_CFG> &&
              std::is_trivially_copyable_v<KZDEV_IPIFILTER_CFG> &&
              std::is_trivially_copyable_v<KZDEV_REGISTER_SERVER> &&
              std::is_trivially_copyable_v<KZDEV_REMOTE_DEVICE_CFG>);
static_assert(std::is_standard_layout_v<KZDEV_MULTI_DDNS_CFG> &&
              std::is_standard_layout_v<KZDEV_REMOTE_DEVICE_CFG> &&
              std::is_standard_layout_v<KZDEV_WLAN_INFO>);

}  // namespace
