// Fixed positions of the device records: the client library hands them over as bytes.
#include <protofix/protofix.h>

#include "layout_support.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>

namespace {

TEST(DeviceRecordLayout, GeneralAndLocales) {
    // clang-format off
    const layout::Position positions[] = {
        SIZE(KZDEV_GENERAL_CFG, 260),
        AT(KZDEV_GENERAL_CFG, szMachineName, 0), AT(KZDEV_GENERAL_CFG, szMachineAddress, 64),
        AT(KZDEV_GENERAL_CFG, wLocalNo, 256),
        SIZE(KZ_DST_POINT, 56),
        AT(KZ_DST_POINT, nYear, 0), AT(KZ_DST_POINT, nMonth, 4), AT(KZ_DST_POINT, nHour, 8),
        AT(KZ_DST_POINT, nMinute, 12), AT(KZ_DST_POINT, nWeek, 16), AT(KZ_DST_POINT, nDay, 20),
        AT(KZ_DST_POINT, reserved, 24),
        SIZE(KZDEV_LOCALES_CFG, 140),
        AT(KZDEV_LOCALES_CFG, stDSTStart, 8), AT(KZDEV_LOCALES_CFG, stDSTEnd, 64),
        AT(KZDEV_LOCALES_CFG, bDSTEnable, 128), AT(KZDEV_LOCALES_CFG, byDateFormat, 133),
        AT(KZDEV_LOCALES_CFG, byTimeFormat, 135), AT(KZDEV_LOCALES_CFG, byLanguage, 136),
    };
    // clang-format on
    layout::ExpectPositions(positions);
}

TEST(DeviceRecordLayout, SerialPortsAndPtz) {
    // clang-format off
    const layout::Position positions[] = {
        SIZE(KZ_SERIAL_ATTR, 8),
        AT(KZ_SERIAL_ATTR, byDataBits, 0), AT(KZ_SERIAL_ATTR, byStopBits, 1),
        AT(KZ_SERIAL_ATTR, byParity, 2), AT(KZ_SERIAL_ATTR, byBaudRate, 3),
        AT(KZ_SERIAL_ATTR, byProtocol, 4), AT(KZ_SERIAL_ATTR, byReserved, 5),
        AT(KZ_SERIAL_ATTR, byAddress, 6), AT(KZ_SERIAL_ATTR, byNumberInMatrix, 7),
        SIZE(KZDEV_COMM_CFG, 300),
        AT(KZDEV_COMM_CFG, nProtocolNum, 4), AT(KZDEV_COMM_CFG, szProtocolName, 8),
        AT(KZDEV_COMM_CFG, nPortNum, 168), AT(KZDEV_COMM_CFG, stAttr, 172),
        SIZE(KZDEV_PTZ_CFG, 1736),
        AT(KZDEV_PTZ_CFG, nProtocolNum, 4), AT(KZDEV_PTZ_CFG, szProtocolName, 8),
        AT(KZDEV_PTZ_CFG, stAttr, 1608),
    };
    // clang-format on
    layout::ExpectPositions(positions);
}

static_assert(std::is_trivially_copyable_v<KZDEV_LOCALES_CFG> &&
              std::is_standard_layout_v<KZDEV_LOCALES_CFG> &&
              std::is_trivially_copyable_v<KZDEV_PTZ_CFG> &&
              std::is_standard_layout_v<KZDEV_COMM_CFG>);

}  // namespace
