// Fixed positions of the media records: the device and the client library exchange them as bytes,
// and the encoder's length checks count bytes.
#include <protofix/protofix.h>

#include "layout_support.h"

#include <gtest/gtest.h>

#include <cstddef>

namespace {

TEST(MediaLayout, EncoderRecords) {
    // clang-format off
    const layout::Position positions[] = {
        SIZE(KZ_VIDEOENC_OPT, 24),
        AT(KZ_VIDEOENC_OPT, videoEnable, 0), AT(KZ_VIDEOENC_OPT, bitRateControl, 1),
        AT(KZ_VIDEOENC_OPT, fps, 2), AT(KZ_VIDEOENC_OPT, compression, 3),
        AT(KZ_VIDEOENC_OPT, imageSize, 4), AT(KZ_VIDEOENC_OPT, quality, 5),
        AT(KZ_VIDEOENC_OPT, bitRate, 6), AT(KZ_VIDEOENC_OPT, audioEnable, 8),
        AT(KZ_VIDEOENC_OPT, audioCompression, 9), AT(KZ_VIDEOENC_OPT, depth, 12),
        AT(KZ_VIDEOENC_OPT, profile, 15), AT(KZ_VIDEOENC_OPT, frequency, 16),
        AT(KZ_VIDEOENC_OPT, gop, 20),
        SIZE(KZDEV_ENCODE_CFG, 468),
        AT(KZDEV_ENCODE_CFG, mainFormat, 36), AT(KZDEV_ENCODE_CFG, extraFormat, 108),
        AT(KZDEV_ENCODE_CFG, reserved2, 180), AT(KZDEV_ENCODE_CFG, snapEnable, 412),
        AT(KZDEV_ENCODE_CFG, snapFormat, 416), AT(KZDEV_ENCODE_CFG, reserved4, 464),
        SIZE(tagNET_EM_VIDEO_COMPRESSION, 4),
    };
    // clang-format on
    layout::ExpectPositions(positions);
}

TEST(MediaLayout, PictureRecords) {
    // clang-format off
    const layout::Position positions[] = {
        SIZE(KZ_VIDEO_COLOR, 36),
        AT(KZ_VIDEO_COLOR, brightness, 28), AT(KZ_VIDEO_COLOR, contrast, 29),
        AT(KZ_VIDEO_COLOR, saturation, 30), AT(KZ_VIDEO_COLOR, hue, 31),
        SIZE(KZDEV_VIDEO_COLOR_CFG, 252), AT(KZDEV_VIDEO_COLOR_CFG, color, 180),
        SIZE(KZDEV_VIDEOIN_OPTIONS_CFG, 80),
        AT(KZDEV_VIDEOIN_OPTIONS_CFG, exposureSpeed, 4), AT(KZDEV_VIDEOIN_OPTIONS_CFG, backlight, 5),
        AT(KZDEV_VIDEOIN_OPTIONS_CFG, mirror, 7), AT(KZDEV_VIDEOIN_OPTIONS_CFG, flip, 8),
        AT(KZDEV_VIDEOIN_OPTIONS_CFG, irisAuto, 10), AT(KZDEV_VIDEOIN_OPTIONS_CFG, whiteBalance, 11),
        AT(KZDEV_VIDEOIN_OPTIONS_CFG, signalFormat, 12), AT(KZDEV_VIDEOIN_OPTIONS_CFG, rotate90, 13),
        AT(KZDEV_VIDEOIN_OPTIONS_CFG, exposureValue1, 16), AT(KZDEV_VIDEOIN_OPTIONS_CFG, exposureValue2, 20),
        AT(KZDEV_VIDEOIN_OPTIONS_CFG, sunriseHour, 25), AT(KZDEV_VIDEOIN_OPTIONS_CFG, sunriseMinute, 26),
        AT(KZDEV_VIDEOIN_OPTIONS_CFG, sunriseSecond, 27), AT(KZDEV_VIDEOIN_OPTIONS_CFG, sunsetHour, 28),
        AT(KZDEV_VIDEOIN_OPTIONS_CFG, sunsetMinute, 29), AT(KZDEV_VIDEOIN_OPTIONS_CFG, sunsetSecond, 30),
        AT(KZDEV_VIDEOIN_OPTIONS_CFG, nightWhiteBalance, 31), AT(KZDEV_VIDEOIN_OPTIONS_CFG, nightGainRed, 32),
        AT(KZDEV_VIDEOIN_OPTIONS_CFG, nightGainBlue, 33), AT(KZDEV_VIDEOIN_OPTIONS_CFG, nightGainGreen, 34),
        AT(KZDEV_VIDEOIN_OPTIONS_CFG, nightGain, 35), AT(KZDEV_VIDEOIN_OPTIONS_CFG, nightGainAuto, 36),
        AT(KZDEV_VIDEOIN_OPTIONS_CFG, nightBrightnessThreshold, 37),
        AT(KZDEV_VIDEOIN_OPTIONS_CFG, nightReferenceLevel, 38),
        AT(KZDEV_VIDEOIN_OPTIONS_CFG, nightExposureSpeed, 39),
        AT(KZDEV_VIDEOIN_OPTIONS_CFG, nightExposureValue1, 40),
        AT(KZDEV_VIDEOIN_OPTIONS_CFG, nightExposureValue2, 44),
        AT(KZDEV_VIDEOIN_OPTIONS_CFG, nightWideDynamicRange, 49),
        AT(KZDEV_VIDEOIN_OPTIONS_CFG, gainRed, 64), AT(KZDEV_VIDEOIN_OPTIONS_CFG, gainBlue, 65),
        AT(KZDEV_VIDEOIN_OPTIONS_CFG, gainGreen, 66), AT(KZDEV_VIDEOIN_OPTIONS_CFG, flashMode, 67),
        AT(KZDEV_VIDEOIN_OPTIONS_CFG, flashValue, 68), AT(KZDEV_VIDEOIN_OPTIONS_CFG, flashPole, 69),
        AT(KZDEV_VIDEOIN_OPTIONS_CFG, externalSyncPhase, 70), AT(KZDEV_VIDEOIN_OPTIONS_CFG, flashPreValue, 71),
        AT(KZDEV_VIDEOIN_OPTIONS_CFG, externalSync, 72), AT(KZDEV_VIDEOIN_OPTIONS_CFG, wideDynamicRange, 76),
        SIZE(KZDEV_VIDEO_STANDARD_CFG, 4),
        SIZE(KZDEV_MEDIA_GLOBAL_CFG, 200), AT(KZDEV_MEDIA_GLOBAL_CFG, packetLength, 199),
    };
    // clang-format on
    layout::ExpectPositions(positions);
}

}  // namespace
