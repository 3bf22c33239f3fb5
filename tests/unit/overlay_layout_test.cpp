// Fixed positions of the overlay records: the device and the client library exchange them as bytes.
#include <protofix/protofix.h>

#include "layout_support.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>

namespace {

TEST(OverlayLayout, TitlesAndCovers) {
    // clang-format off
    const layout::Position positions[] = {
        SIZE(KZ_CHANNEL_TITLE, 64),
        SIZE(KZ_OSD_TITLE, 96),
        AT(KZ_OSD_TITLE, frontColor, 0), AT(KZ_OSD_TITLE, backColor, 4), AT(KZ_OSD_TITLE, rect, 8),
        AT(KZ_OSD_TITLE, previewBlend, 24), AT(KZ_OSD_TITLE, encodeBlend, 25),
        AT(KZ_OSD_TITLE, reserved, 26), AT(KZ_OSD_TITLE, text, 32),
        SIZE(KZDEV_VIDEOWIDGET_OSD_CFG, 4 + 8 * 96), AT(KZDEV_VIDEOWIDGET_OSD_CFG, title, 4),
        SIZE(KZ_COVER, 72),
        AT(KZ_COVER, rect, 0), AT(KZ_COVER, frontColor, 32), AT(KZ_COVER, reserved1, 36),
        AT(KZ_COVER, encodeBlend, 37), AT(KZ_COVER, previewBlend, 38), AT(KZ_COVER, reserved2, 39),
        SIZE(KZDEV_VIDEOWIDGET_COVER_CFG, 40 + 16 * 72),
        AT(KZDEV_VIDEOWIDGET_COVER_CFG, maxCoverCount, 36), AT(KZDEV_VIDEOWIDGET_COVER_CFG, coverCount, 37),
        AT(KZDEV_VIDEOWIDGET_COVER_CFG, cover, 40),
    };
    // clang-format on
    layout::ExpectPositions(positions);
}

TEST(OverlayLayout, ChannelWidgetAndWatermark) {
    // clang-format off
    const layout::Position positions[] = {
        SIZE(KZDEV_VIDEOWIDGET_CHANNEL_CFG, 352),
        AT(KZDEV_VIDEOWIDGET_CHANNEL_CFG, timeFrontColor, 256),
        AT(KZDEV_VIDEOWIDGET_CHANNEL_CFG, timeBackColor, 260),
        AT(KZDEV_VIDEOWIDGET_CHANNEL_CFG, timeRect, 264),
        AT(KZDEV_VIDEOWIDGET_CHANNEL_CFG, timeEncodeBlend, 296),
        AT(KZDEV_VIDEOWIDGET_CHANNEL_CFG, timeShowWeek, 297),
        AT(KZDEV_VIDEOWIDGET_CHANNEL_CFG, titleFrontColor, 304),
        AT(KZDEV_VIDEOWIDGET_CHANNEL_CFG, titleBackColor, 308),
        AT(KZDEV_VIDEOWIDGET_CHANNEL_CFG, titleRect, 312),
        AT(KZDEV_VIDEOWIDGET_CHANNEL_CFG, titleEncodeBlend, 344),
        SIZE(KZDEV_WATERMARK_CFG, 144),
        AT(KZDEV_WATERMARK_CFG, enable, 4), AT(KZDEV_WATERMARK_CFG, dataType, 12),
        AT(KZDEV_WATERMARK_CFG, string, 16),
    };
    // clang-format on
    layout::ExpectPositions(positions);
}

// 64-bit rectangles and 32-bit colour words, as the device lays them out.
static_assert(sizeof(KZ_COVER{}.rect[0]) == 8 && sizeof(KZ_COVER{}.frontColor) == 4);
static_assert(sizeof(KZDEV_VIDEOWIDGET_CHANNEL_CFG{}.timeRect[0]) == 8 &&
              sizeof(KZDEV_VIDEOWIDGET_CHANNEL_CFG{}.titleFrontColor) == 4);
static_assert(std::is_trivially_copyable_v<KZDEV_VIDEOWIDGET_OSD_CFG> &&
              std::is_trivially_copyable_v<KZDEV_VIDEOWIDGET_COVER_CFG> &&
              std::is_trivially_copyable_v<KZDEV_VIDEOWIDGET_CHANNEL_CFG> &&
              std::is_trivially_copyable_v<KZDEV_WATERMARK_CFG>);

}  // namespace
