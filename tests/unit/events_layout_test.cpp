// Fixed positions of the fault-event and video-detection records.
#include <protofix/protofix.h>

#include "layout_support.h"

#include <gtest/gtest.h>

#include <cstddef>

namespace {

// Schedules are 7 x 6 time sections of 28 bytes (1176); the linkage record is 956 bytes, the
// older one 244.
TEST(EventsLayout, FaultEventRecords) {
    // clang-format off
    const layout::Position positions[] = {
        SIZE(KZ_STORAGE_EVENT, 2136),
        AT(KZ_STORAGE_EVENT, enable, 0), AT(KZ_STORAGE_EVENT, lowerLimit, 1),
        AT(KZ_STORAGE_EVENT, timeSections, 4), AT(KZ_STORAGE_EVENT, handler, 1180),
        SIZE(KZDEV_STORAGE_ALARM_CFG, 3 * 2136),
        AT(KZDEV_STORAGE_ALARM_CFG, notExist, 0), AT(KZDEV_STORAGE_ALARM_CFG, lowSpace, 2136),
        AT(KZDEV_STORAGE_ALARM_CFG, failure, 4272),
        SIZE(KZDEV_NETABORT_CFG, 960), AT(KZDEV_NETABORT_CFG, handler, 4),
        SIZE(KZDEV_CONFLICT_CFG, 248), AT(KZDEV_CONFLICT_CFG, handler, 4),
    };
    // clang-format on
    layout::ExpectPositions(positions);
}

TEST(EventsLayout, VideoDetectionRecords) {
    // clang-format off
    const layout::Position positions[] = {
        SIZE(KZDEV_MOTION_DETECT_CFG, 8 + 1024 + 1176 + 956),
        AT(KZDEV_MOTION_DETECT_CFG, enable, 0), AT(KZDEV_MOTION_DETECT_CFG, level, 2),
        AT(KZDEV_MOTION_DETECT_CFG, rows, 4), AT(KZDEV_MOTION_DETECT_CFG, cols, 6),
        AT(KZDEV_MOTION_DETECT_CFG, region, 8), AT(KZDEV_MOTION_DETECT_CFG, region[1], 40),
        AT(KZDEV_MOTION_DETECT_CFG, timeSections, 1032), AT(KZDEV_MOTION_DETECT_CFG, handler, 2208),
        SIZE(KZDEV_LOSS_DETECT_CFG, 2136),
        AT(KZDEV_LOSS_DETECT_CFG, timeSections, 4), AT(KZDEV_LOSS_DETECT_CFG, handler, 1180),
        SIZE(KZDEV_BLIND_DETECT_CFG, 2136), AT(KZDEV_BLIND_DETECT_CFG, level, 1),
        AT(KZDEV_BLIND_DETECT_CFG, timeSections, 4), AT(KZDEV_BLIND_DETECT_CFG, handler, 1180),
    };
    // clang-format on
    layout::ExpectPositions(positions);
}

}  // namespace
