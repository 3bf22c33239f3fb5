#include "losses.h"

#include <cctype>

namespace protofix::tool {
namespace {

bool PlainWord(const std::string& key) {
    if (key.empty()) return false;
    for (const char c : key) {
        if (std::isalnum(static_cast<unsigned char>(c)) == 0 && c != '_') return false;
    }
    return true;
}

bool Integral(const Json::Value& v) { return v.isInt64() || v.isUInt64(); }

class Walker {
public:
    Walker(const std::function<bool(const Path&)>& unread, std::vector<Loss>& losses)
        : m_unread(unread), m_losses(losses) {}

    void Walk(Path& path, const Json::Value& before, const Json::Value* after) {
        // Nothing to lose in a null, an empty list or an empty object.
        if (before.isNull() || ((before.isArray() || before.isObject()) && before.empty())) return;
        if (after == nullptr) {
            Missing(path, before);
            return;
        }
        if (before.isObject() && after->isObject()) {
            for (const std::string& name : before.getMemberNames()) {
                path.emplace_back(name);
                Walk(path, before[name], after->find(name.data(), name.data() + name.size()));
                path.pop_back();
            }
        } else if (before.isArray() && after->isArray()) {
            for (Json::ArrayIndex i = 0; i < before.size(); ++i) {
                path.emplace_back(i);
                Walk(path, before[i], i < after->size() ? &(*after)[i] : nullptr);
                path.pop_back();
            }
        } else if (!SameValue(before, *after)) {
            m_losses.push_back({Loss::kChanged, path, before, *after});
        }
    }

private:
    // A value that did not come back: ignored by the section as a whole, or read and given back
    // elsewhere (then each of its parts is looked at, to find what the section ignores in it).
    void Missing(Path& path, const Json::Value& before) {
        if (m_unread(path)) {
            m_losses.push_back({Loss::kNotRead, path, before, Json::Value()});
            return;
        }
        if (before.isObject() && !before.empty()) {
            for (const std::string& name : before.getMemberNames()) {
                path.emplace_back(name);
                Walk(path, before[name], nullptr);
                path.pop_back();
            }
        } else if (before.isArray() && !before.empty()) {
            for (Json::ArrayIndex i = 0; i < before.size(); ++i) {
                path.emplace_back(i);
                Walk(path, before[i], nullptr);
                path.pop_back();
            }
        } else {
            m_losses.push_back({Loss::kNotWrittenBack, path, before, Json::Value()});
        }
    }

    const std::function<bool(const Path&)>& m_unread;
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

Json::Value Without(const Json::Value& value, const Path& path) {
    Json::Value copy = value;
    if (path.empty()) return Json::Value();
    Json::Value* at = &copy;
    for (std::size_t i = 0; i + 1 < path.size(); ++i) {
        if (const auto* index = std::get_if<Json::ArrayIndex>(&path[i])) {
            at = &(*at)[*index];
        } else {
            at = &(*at)[std::get<std::string>(path[i])];
        }
    }
    if (const auto* index = std::get_if<Json::ArrayIndex>(&path.back())) {
        (*at)[*index] = Json::Value();
    } else {
        at->removeMember(std::get<std::string>(path.back()));
    }
    return copy;
}

std::vector<Loss> FindLosses(const Json::Value& before, const Json::Value& after,
                             const std::function<bool(const Path&)>& unread) {
    std::vector<Loss> losses;
    Walker walker(unread, losses);
    Path path;
    if (before.isObject() != after.isObject() && !before.isNull()) {
        // A table of another kind than the one the section gives back: nothing of it came back.
        losses.push_back({Loss::kNotRead, path, before, Json::Value()});
        return losses;
    }
    walker.Walk(path, before, &after);
    return losses;
}

bool SameValue(const Json::Value& a, const Json::Value& b) {
    if (a.isBool() || b.isBool()) return a.isBool() && b.isBool() && a.asBool() == b.asBool();
    if (a.isNumeric() && b.isNumeric()) {
        if (Integral(a) && Integral(b)) {
            if (a.isInt64() && b.isInt64()) return a.asInt64() == b.asInt64();
            return a.isUInt64() && b.isUInt64() && a.asUInt64() == b.asUInt64();
        }
        return a.asDouble() == b.asDouble();
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
    if (text.size() > kLongest) text = text.substr(0, kLongest - 3) + "...";
    return text;
}

}  // namespace protofix::tool
