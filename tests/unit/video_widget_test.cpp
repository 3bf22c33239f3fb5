// The combined "VideoWidget" section: the "Encode" member of the F5 text to the table and back.
#include "overlay_support.h"
#include "request_support.h"

#include <string>

using overlay_support::MergeF5;
using overlay_support::Written;
using support::Packet;
using support::ParseJson;

namespace {

// An earlier-protocol device's text: both titles (the time title's flag a boolean), two covers,
// one custom title, and members the section does not convert.
const char* const kF5 = R"({"Encode":{
    "ChnTitle":{"FrontColor":{"Red":255,"Green":255,"Blue":255,"Alpha":0},
                "BackColor":{"Red":0,"Green":0,"Blue":0,"Alpha":128},
                "Rect":{"Left":100,"Top":600,"Right":3000,"Bottom":1200},"Show":1},
    "TimeTitle":{"FrontColor":{"Red":10,"Green":20,"Blue":30,"Alpha":40},
                 "BackColor":{"Red":1,"Green":2,"Blue":3,"Alpha":4},
                 "Rect":{"Left":5000,"Top":100,"Right":8000,"Bottom":700},"Show":true},
    "Covers":{"CoverBlock":[{"Rect":{"Left":0,"Top":0,"Right":2048,"Bottom":2048},"EncodeBlend":1,"PreviewBlend":0},
                            {"Rect":{"Left":1,"Top":2,"Right":3,"Bottom":4},"EncodeBlend":0,"PreviewBlend":1}]},
    "UserDefinedOSD":{"OSDs":[{"FrontColor":{"Red":1,"Green":2,"Blue":3,"Alpha":4},
                               "BackColor":{"Red":5,"Green":6,"Blue":7,"Alpha":8},
                               "Rect":{"Left":9,"Top":10,"Right":11,"Bottom":12},
                               "EncodeBlend":1,"PreviewBlend":0,"Text":"Gate 3"}]},
    "Video":{"Compression":"H.264"}}})";

// Derived by hand from kF5: colours [Red, Green, Blue, Alpha], rectangles [Left, Top, Right,
// Bottom], "Show" as "EncodeBlend".
const char* const kTable = R"({
    "ChannelTitle":{"FrontColor":[255,255,255,0],"BackColor":[0,0,0,128],"Rect":[100,600,3000,1200],
                    "EncodeBlend":true},
    "TimeTitle":{"FrontColor":[10,20,30,40],"BackColor":[1,2,3,4],"Rect":[5000,100,8000,700],
                 "EncodeBlend":true},
    "Covers":[{"Rect":[0,0,2048,2048],"EncodeBlend":true,"PreviewBlend":false},
              {"Rect":[1,2,3,4],"EncodeBlend":false,"PreviewBlend":true}],
    "CustomTitle":[{"FrontColor":[1,2,3,4],"BackColor":[5,6,7,8],"Rect":[9,10,11,12],
                    "EncodeBlend":true,"PreviewBlend":false}]})";

// The table of the text; merged into the same text, it gives the text back as the writer writes it.
TEST(VideoWidget, PacketAndRoundTrip) {
    const support::Envelope envelope = Packet("VideoWidget", kF5, PROTOFIX_MODE_TEXT);
    EXPECT_TRUE(envelope.result());
    EXPECT_EQ(envelope.table(), ParseJson(kTable));
    const overlay_support::Merged merged =
        MergeF5("VideoWidget", kF5, Json::FastWriter().write(envelope.table()));
    EXPECT_EQ(merged.result, 1);
    EXPECT_EQ(merged.text, Written(kF5));
}

TEST(VideoWidget, PacketEdges) {
    const std::pair<const char*, const char*> cases[] = {
        {R"({"Video":{}})", "null"},
        {R"({"Encode":{"ChnTitle":5,"TimeTitle":{}}})", R"({"TimeTitle":{}})"},
        // A colour member missing reads 0; a rectangle of another kind is not written; 1 alone is on.
        {R"({"Encode":{"ChnTitle":{"FrontColor":{"Red":7},"Rect":[1,2,3,4],"Show":2}}})",
         R"({"ChannelTitle":{"FrontColor":[7,0,0,0],"EncodeBlend":false}})"},
        // Every element of a list keeps its index, an element of another kind as an empty entry.
        {R"({"Encode":{"Covers":{"CoverBlock":[3,{"EncodeBlend":true}]},"UserDefinedOSD":{"OSDs":[]}}})",
         R"({"Covers":[{},{"EncodeBlend":true}],"CustomTitle":[]})"},
        {R"({"Encode":{"Covers":[{"EncodeBlend":1}],"UserDefinedOSD":{"OSDs":{"0":{}}}}})", "null"},
    };
    for (const auto& [f5, table] : cases) {
        const support::Envelope envelope = Packet("VideoWidget", f5, PROTOFIX_MODE_TEXT);
        EXPECT_TRUE(envelope.result()) << f5;
        EXPECT_EQ(envelope.table(), ParseJson(table)) << f5;
    }
    EXPECT_FALSE(Packet("VideoWidget", "{\"Encode\":", PROTOFIX_MODE_TEXT).result());
}

// The merge writes into the objects and lists the text has, never adds one, never makes a list
// longer; a flag keeps the kind the text gives it.
TEST(VideoWidget, Merge) {
    struct Case {
        const char *f5, *table, *merged;
    };
    const Case cases[] = {
        {R"({"Encode":{"ChnTitle":{"Show":true},"TimeTitle":{"Show":1}}})",
         R"({"ChannelTitle":{"EncodeBlend":false},"TimeTitle":{"EncodeBlend":false}})",
         R"({"Encode":{"ChnTitle":{"Show":false},"TimeTitle":{"Show":0}}})"},
        // A missing colour or rectangle is written whole; one of another kind, or a table array
        // of three, leaves the text.
        {R"({"Encode":{"ChnTitle":{"FrontColor":5,"BackColor":{"Red":1,"Extra":9}}}})",
         R"({"ChannelTitle":{"FrontColor":[1,2,3,4],"BackColor":[5,6,7,8],"Rect":[1,2,3,4]}})",
         R"({"Encode":{"ChnTitle":{"FrontColor":5,"BackColor":{"Red":5,"Green":6,"Blue":7,"Alpha":8,"Extra":9},
             "Rect":{"Left":1,"Top":2,"Right":3,"Bottom":4}}}})"},
        {R"({"Encode":{"ChnTitle":{"Rect":{"Left":1}}}})", R"({"ChannelTitle":{"Rect":[7,7,7]}})",
         R"({"Encode":{"ChnTitle":{"Rect":{"Left":1}}}})"},
        // No time title in the text: none is made.
        {R"({"Encode":{}})",
         R"({"TimeTitle":{"EncodeBlend":true},"Covers":[{"EncodeBlend":true}]})",
         R"({"Encode":{}})"},
        {R"({"Other":1})", R"({"ChannelTitle":{"EncodeBlend":true}})", R"({"Other":1})"},
        // Lists: the shorter of the two; elements of another kind are skipped.
        {R"({"Encode":{"Covers":{"CoverBlock":[{"EncodeBlend":0},7]}}})",
         R"({"Covers":[{"EncodeBlend":true,"PreviewBlend":true},{"EncodeBlend":true},{"EncodeBlend":true}]})",
         R"({"Encode":{"Covers":{"CoverBlock":[{"EncodeBlend":1,"PreviewBlend":1},7]}}})"},
        {R"({"Encode":{"UserDefinedOSD":{"OSDs":[{"Text":"a"},{"Text":"b"}]}}})",
         R"({"CustomTitle":[{"PreviewBlend":true,"Text":"x"}]})",
         R"({"Encode":{"UserDefinedOSD":{"OSDs":[{"Text":"a","PreviewBlend":1},{"Text":"b"}]}}})"},
        {R"({"Encode":{"ChnTitle":{"Show":1}}})", R"([{"ChannelTitle":{"EncodeBlend":false}}])",
         R"({"Encode":{"ChnTitle":{"Show":1}}})"},
    };
    for (const Case& c : cases) {
        const overlay_support::Merged merged = MergeF5("VideoWidget", c.f5, c.table);
        EXPECT_EQ(merged.result, 1) << c.f5 << c.table;
        EXPECT_EQ(merged.text, Written(c.merged)) << c.f5 << c.table;
    }
    overlay_support::ExpectCapacityRule("VideoWidget", R"({"Encode":{"ChnTitle":{"Show":1}}})",
                                        R"({"ChannelTitle":{"EncodeBlend":false}})",
                                        Written(R"({"Encode":{"ChnTitle":{"Show":0}}})"));
}

}  // namespace
