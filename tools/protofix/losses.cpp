#include "losses.h"

#include <protofix/protofix.h>

#include <cctype>
#include <cstring>
#include <map>
#include <set>

namespace protofix::tool {
namespace {

constexpr int kLinkChannels = KZ_MSG_HANDLE_EX_CHANNELS;
constexpr const char* kNoLink = "None";

bool PlainWord(const std::string& key) {
    if (key.empty()) return false;
    for (const char c : key) {
        if (std::isalnum(static_cast<unsigned char>(c)) == 0 && c != '_') return false;
    }
    return true;
}

bool Integral(const Json::Value& v) { return v.isInt64() || v.isUInt64(); }
bool Container(const Json::Value& v) { return v.isObject() || v.isArray(); }
bool Number(const Json::Value& v) { return v.isNumeric() && !v.isBool(); }

// Two texts of a time section read as the device reads them, in the normal or the short form.
bool SameTimeSection(const std::string& a, const std::string& b) {
    for (const auto parse :
         {&CReqConfigProtocolFix::ParseNormalTime, &CReqConfigProtocolFix::ParseNormalTimeEx}) {
        tagKZ_TSECT x{};
        tagKZ_TSECT y{};
        if (parse(x, a.c_str()) && parse(y, b.c_str())) return std::memcmp(&x, &y, sizeof x) == 0;
    }
    return false;
}

bool EndsWith(const std::string& text, const char* end) {
    const std::size_t n = std::strlen(end);
    return text.size() >= n && text.compare(text.size() - n, n, end) == 0;
}

bool AllNumbers(const Json::Value& list) {
    for (const Json::Value& element : list) {
        if (!Number(element)) return false;
    }
    return true;
}

// The channel a number of a channel list selects, as the device reads it; false when it selects
// none the device can hold.
bool ChannelOf(const Json::Value& v, int& channel) {
    if (!v.isConvertibleTo(Json::intValue)) return false;
    channel = v.asInt();
    return true;
}

struct Link {
    std::string type;
    Json::Value value;
    Json::ArrayIndex index = 0;  // of the entry that gave it
};

// The links a table's list gives, by channel: type, value and channel persist from entry to
// entry; a later entry for the same channel wins; a "None" link is no link.
std::map<int, Link> LinksGiven(const Json::Value& list, LinkReading reading) {
    std::map<int, Link> links;
    std::string type;
    Json::Value value(0);
    int channel = 0;
    for (Json::ArrayIndex i = 0; i < list.size(); ++i) {
        const Json::Value& entry = list[i];
        if (!entry.isArray() || (reading == LinkReading::kF5 && entry.size() < 5)) continue;
        if (entry[0].isString()) type = entry[0].asString();
        if (entry[1].isInt()) value = entry[1];
        if (entry[4].isInt()) channel = entry[4].asInt();
        if (channel < 0 || channel >= kLinkChannels) continue;
        links[channel] = {type, value, i};
    }
    for (auto it = links.begin(); it != links.end();) {
        it = it->second.type == kNoLink ? links.erase(it) : std::next(it);
    }
    return links;
}

// The links a section gives back: each entry names its channel, or stands at its index.
std::map<int, Link> LinksBack(const Json::Value& list) {
    std::map<int, Link> links;
    for (Json::ArrayIndex i = 0; i < list.size(); ++i) {
        const Json::Value& entry = list[i];
        if (!entry.isArray() || !entry[0].isString() || entry[0].asString() == kNoLink) continue;
        const int channel =
            entry.size() >= 5 && entry[4].isInt() ? entry[4].asInt() : static_cast<int>(i);
        links[channel] = {entry[0].asString(), entry[1], i};
    }
    return links;
}

class Walker {
public:
    Walker(const Schema* known, LinkReading links, std::vector<Loss>& losses)
        : m_known(known), m_links(links), m_losses(losses) {}

    void Walk(Path& path, const Shape& shape, const Json::Value& before, const Json::Value* after) {
        // Nothing to lose in a null, an empty list or an empty object.
        if (before.isNull() || ((before.isArray() || before.isObject()) && before.empty())) return;
        // Nothing came back of a value the section does not give back, or gives back as another
        // kind of thing (a number where it writes an object, a text for the whole table).
        const bool sameKind =
            after != nullptr && !after->isNull() &&
            ((before.isObject() && after->isObject()) || (before.isArray() && after->isArray()) ||
             (!Container(before) && !Container(*after)));
        if (!sameKind) {
            Absent(path, shape, before);
        } else if (before.isObject()) {
            for (const std::string& name : before.getMemberNames()) {
                path.emplace_back(name);
                Walk(path, ShapeChild(shape, name), before[name],
                     after->find(name.data(), name.data() + name.size()));
                path.pop_back();
            }
        } else if (before.isArray()) {
            List(path, shape, before, *after);
        } else if (!SameMeaning(before, *after)) {
            Add(Loss::kChanged, path, shape, before, *after);
        }
    }

private:
    void Add(Loss::Kind kind, const Path& path, const Shape& shape, const Json::Value& before,
             const Json::Value& after) {
        Loss loss;
        loss.kind = kind;
        loss.path = path;
        loss.shape = shape;
        loss.before = before;
        loss.after = after;
        loss.known = m_known == nullptr || m_known->Knows(shape);
        m_losses.push_back(std::move(loss));
    }

    // A value not given back, with all below it: one loss.
    void Absent(Path& path, const Shape& shape, const Json::Value& before) {
        Add(Loss::kAbsent, path, shape, before, Json::Value());
    }

    void List(Path& path, const Shape& shape, const Json::Value& before, const Json::Value& after) {
        const std::string* key = path.empty() ? nullptr : std::get_if<std::string>(&path.back());
        if (key != nullptr && m_known != nullptr && *key == "PtzLink") {
            Links(path, shape, before, after);
        } else if (key != nullptr && EndsWith(*key, "Channels") && AllNumbers(before) &&
                   AllNumbers(after)) {
            ChannelSet(path, shape, before, after);
        } else {
            for (Json::ArrayIndex i = 0; i < before.size(); ++i) {
                path.emplace_back(i);
                Walk(path, ShapeElement(shape), before[i], i < after.size() ? &after[i] : nullptr);
                path.pop_back();
            }
        }
    }

    // A channel list is the set of channels it selects: order and repeats mean nothing.
    void ChannelSet(Path& path, const Shape& shape, const Json::Value& before,
                    const Json::Value& after) {
        std::set<int> back;
        for (const Json::Value& element : after) {
            int channel = 0;
            if (ChannelOf(element, channel)) back.insert(channel);
        }
        for (Json::ArrayIndex i = 0; i < before.size(); ++i) {
            int channel = 0;
            if (ChannelOf(before[i], channel) && back.count(channel) != 0) continue;
            path.emplace_back(i);
            Add(Loss::kAbsent, path, ShapeElement(shape), before[i], Json::Value());
            path.pop_back();
        }
    }

    // PTZ links by channel: each link given must come back on its channel with its type and
    // value; the entry that gave it carries the loss.
    void Links(Path& path, const Shape& shape, const Json::Value& before,
               const Json::Value& after) {
        const std::map<int, Link> back = LinksBack(after);
        for (const auto& [channel, link] : LinksGiven(before, m_links)) {
            const auto found = back.find(channel);
            if (found != back.end() && found->second.type == link.type &&
                SameMeaning(found->second.value, link.value)) {
                continue;
            }
            path.emplace_back(link.index);
            Add(found != back.end() ? Loss::kChanged : Loss::kAbsent, path, ShapeElement(shape),
                before[link.index],
                found != back.end() ? after[found->second.index] : Json::Value());
            path.pop_back();
        }
    }

    const Schema* m_known;
    LinkReading m_links;
    std::vector<Loss>& m_losses;
};

}  // namespace

std::string FormatPath(const Path& path) {
    if (path.empty()) return "(table)";
    std::string text;
    for (const PathStep& step : path) {
        if (const auto* index = std::get_if<Json::ArrayIndex>(&step)) {
            text += "[" + std::to_string(*index) + "]";
            continue;
        }
        const std::string& key = std::get<std::string>(step);
        if (PlainWord(key)) {
            text += (text.empty() ? "" : ".") + key;
        } else {
            text += "[" + Compact(Json::Value(key)) + "]";
        }
    }
    return text;
}

Json::Value PathJson(const Path& path) {
    Json::Value steps(Json::arrayValue);
    for (const PathStep& step : path) {
        if (const auto* index = std::get_if<Json::ArrayIndex>(&step)) {
            steps.append(Json::Value(*index));
        } else {
            steps.append(Json::Value(std::get<std::string>(step)));
        }
    }
    return steps;
}

std::vector<Loss> CompareTables(const Json::Value& before, const Json::Value& after,
                                const Schema& known, LinkReading links) {
    std::vector<Loss> losses;
    Walker walker(&known, links, losses);
    Path path;
    walker.Walk(path, Shape(), before, &after);
    return losses;
}

std::vector<Loss> CompareTexts(const Json::Value& before, const Json::Value& after) {
    std::vector<Loss> losses;
    Walker walker(nullptr, LinkReading::kF5, losses);
    Path path;
    walker.Walk(path, Shape(), before, &after);
    return losses;
}

bool SameNumber(const Json::Value& a, const Json::Value& b) {
    if (Integral(a) && Integral(b)) {
        if (a.isInt64() && b.isInt64()) return a.asInt64() == b.asInt64();
        return a.isUInt64() && b.isUInt64() && a.asUInt64() == b.asUInt64();
    }
    return a.asDouble() == b.asDouble();
}

bool SameMeaning(const Json::Value& a, const Json::Value& b) {
    if (a.isBool() && b.isBool()) return a.asBool() == b.asBool();
    // A flag read from a number, or a number written from a flag: its truth is what counts.
    if ((a.isBool() && Number(b)) || (Number(a) && b.isBool())) return a.asBool() == b.asBool();
    if (Number(a) && Number(b)) return SameNumber(a, b);
    if (a.isString() && b.isString()) {
        return a.asString() == b.asString() || SameTimeSection(a.asString(), b.asString());
    }
    return a == b;
}

std::string Compact(const Json::Value& value) {
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    builder["emitUTF8"] = true;
    return Json::writeString(builder, value);
}

std::string Brief(const Json::Value& value) {
    constexpr std::size_t kLongest = 80;
    std::string text = Compact(value);
    if (text.size() <= kLongest) return text;
    return text.substr(0, kLongest - 3) + "... (" + std::to_string(text.size()) + " bytes)";
}

}  // namespace protofix::tool
