// Fixed positions of the recording and storage records: the device and the client library
// exchange them as bytes.
#include <protofix/protofix.h>

#include "layout_support.h"

#include <gtest/gtest.h>

#include <cstddef>

namespace {

TEST(StorageLayout, RecordCfg) {
    // clang-format off
    const layout::Position positions[] = {
        SIZE(KZDEV_RECORD_CFG, 1184),
        AT(KZDEV_RECORD_CFG, nReserved, 0), AT(KZDEV_RECORD_CFG, stSect, 4),
        AT(KZDEV_RECORD_CFG, byPreRecord, 4 + 7 * 6 * 28), AT(KZDEV_RECORD_CFG, byReserved, 1181),
        AT(KZDEV_RECORD_CFG, byVideoStream, 1182), AT(KZDEV_RECORD_CFG, reserved, 1183),
    };
    // clang-format on
    layout::ExpectPositions(positions);
}

// The three bytes after byProtocol are reserved and put szSubDirectory on a 4-byte boundary.
TEST(StorageLayout, NasCfg) {
    // clang-format off
    const layout::Position positions[] = {
        SIZE(KZ_NAS_TSECT, 48),
        AT(KZ_NAS_TSECT, stSect, 0), AT(KZ_NAS_TSECT, byFlag0, 28), AT(KZ_NAS_TSECT, byFlag1, 29),
        AT(KZ_NAS_TSECT, byFlag2, 30), AT(KZ_NAS_TSECT, reserved, 31),
        SIZE(KZDEV_NAS_CFG, 11284),
        AT(KZDEV_NAS_CFG, bEnable, 4), AT(KZDEV_NAS_CFG, szAddress, 5), AT(KZDEV_NAS_CFG, wPort, 22),
        AT(KZDEV_NAS_CFG, szDirectory, 24), AT(KZDEV_NAS_CFG, szUserName, 264),
        AT(KZDEV_NAS_CFG, szPassword, 328), AT(KZDEV_NAS_CFG, nFileLength, 392),
        AT(KZDEV_NAS_CFG, nInterval, 396), AT(KZDEV_NAS_CFG, stChnTime, 400),
        AT(KZDEV_NAS_CFG, byProtocol, 400 + 16 * 7 * 2 * 48), AT(KZDEV_NAS_CFG, reserved, 11153),
        AT(KZDEV_NAS_CFG, szSubDirectory, 11156),
    };
    // clang-format on
    layout::ExpectPositions(positions);
}

TEST(StorageLayout, StorageGroupCfg) {
    // clang-format off
    const layout::Position positions[] = {
        SIZE(KZDEV_STORAGEGROUP_CFG, 8), AT(KZDEV_STORAGEGROUP_CFG, byOverWrite, 4),
        AT(KZDEV_STORAGEGROUP_CFG, reserved, 5),
    };
    // clang-format on
    layout::ExpectPositions(positions);
}

}  // namespace
