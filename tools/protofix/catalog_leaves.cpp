#include "catalog_leaves.h"

#include "diagnosis.h"

#include <algorithm>
#include <cstddef>
#include <variant>

namespace protofix::tool {
namespace {

// Equal values, numbers by value whatever their JSON integer kind: a change the experiments look
// for is any other difference, a flag's kind included.
bool SameValue(const Json::Value& a, const Json::Value& b) {
    if (a.isBool() || b.isBool()) return a.isBool() && b.isBool() && a.asBool() == b.asBool();
    if (a.isNumeric() && b.isNumeric()) return SameNumber(a, b);
    return a == b;
}

void CollectLeaves(const Json::Value& value, Path& path, const std::string& key,
                   std::vector<Leaf>& leaves) {
    if (value.isObject() && !value.empty()) {
        for (const std::string& name : value.getMemberNames()) {
            path.emplace_back(name);
            CollectLeaves(value[name], path, key.empty() ? name : key + "." + name, leaves);
            path.pop_back();
        }
    } else if (value.isArray() && !value.empty()) {
        for (Json::ArrayIndex i = 0; i < value.size(); ++i) {
            path.emplace_back(i);
            CollectLeaves(value[i], path, key + "[]", leaves);
            path.pop_back();
        }
    } else {
        leaves.push_back({path, value.isArray() ? key + "[]" : key, value});
    }
}

// A few values are enough to reach every field a key fills.
constexpr std::size_t kAlternatives = 8;

void Remember(Alternatives& alternatives, const Leaf& leaf) {
    if (leaf.value.isNull()) return;
    std::vector<Json::Value>& values = alternatives[leaf.key];
    if (values.size() >= kAlternatives) return;
    for (const Json::Value& value : values) {
        if (SameValue(value, leaf.value)) return;
    }
    values.push_back(leaf.value);
}

Json::Value& At(Json::Value& root, const Path& path) {
    Json::Value* at = &root;
    for (const PathStep& step : path) {
        at = std::holds_alternative<std::string>(step) ? &(*at)[std::get<std::string>(step)]
                                                       : &(*at)[std::get<Json::ArrayIndex>(step)];
    }
    return *at;
}

// The characters of a text changed one at a time, up to this many.
constexpr std::size_t kTextPositions = 64;

// The values a leaf is changed into, one experiment each: a flag turned over, a number with its
// lowest bit turned over, a text with one character changed (each in turn, so that every field
// a text such as "1 08:00:00-18:00:00" fills is reached), an empty list given an element.
std::vector<Json::Value> OtherValues(const Json::Value& value) {
    std::vector<Json::Value> others;
    if (value.isBool()) {
        others.emplace_back(!value.asBool());
    } else if (value.isInt64()) {
        others.emplace_back(static_cast<Json::Int64>(value.asInt64() ^ 1));
    } else if (value.isUInt64()) {
        others.emplace_back(static_cast<Json::UInt64>(value.asUInt64() ^ 1u));
    } else if (value.isDouble()) {
        others.emplace_back(value.asDouble() + 1.0);
    } else if (value.isString()) {
        const std::string text = value.asString();
        if (text.empty()) others.emplace_back("x");
        for (std::size_t i = 0; i < std::min(text.size(), kTextPositions); ++i) {
            std::string other = text;
            other[i] = Another(text[i]);
            others.emplace_back(other);
        }
    } else if (value.isArray()) {
        Json::Value one(Json::arrayValue);
        one.append(0);
        others.push_back(one);
    }
    return others;
}

}  // namespace

std::vector<Leaf> LeavesOf(const Json::Value& value) {
    std::vector<Leaf> leaves;
    Path path;
    CollectLeaves(value, path, "", leaves);
    return leaves;
}

std::set<std::string> ChangedKeys(const std::vector<Leaf>& before, const Json::Value& after,
                                  Alternatives& alternatives) {
    std::map<std::string, const Leaf*> old;
    for (const Leaf& leaf : before) old[FormatPath(leaf.path)] = &leaf;
    std::set<std::string> changed;
    for (const Leaf& leaf : LeavesOf(after)) {
        const auto found = old.find(FormatPath(leaf.path));
        if (found != old.end()) {
            const bool same = SameValue(found->second->value, leaf.value);
            old.erase(found);
            if (same) continue;
        }
        changed.insert(leaf.key);
        Remember(alternatives, leaf);
    }
    for (const auto& [path, leaf] : old) changed.insert(leaf->key);
    return changed;
}

char Another(char c) {
    if (c >= '0' && c <= '9') return c == '9' ? '0' : static_cast<char>(c + 1);
    if (c >= 'a' && c <= 'z') return c == 'z' ? 'a' : static_cast<char>(c + 1);
    if (c >= 'A' && c <= 'Z') return c == 'Z' ? 'A' : static_cast<char>(c + 1);
    return 'x';
}

bool Vary(const Json::Value& root, const Leaf& leaf, std::set<std::string>& varied,
          const Alternatives& alternatives,
          const std::function<bool(const Json::Value&)>& experiment) {
    std::vector<Json::Value> others = OtherValues(leaf.value);
    if (varied.insert(leaf.key).second) {
        const auto seen = alternatives.find(leaf.key);
        if (seen != alternatives.end()) {
            for (const Json::Value& value : seen->second) {
                if (!SameValue(value, leaf.value)) others.push_back(value);
            }
        }
    } else if (others.size() > 2) {
        others.erase(others.begin() + 1, others.end() - 1);
    }
    bool showed = false;
    for (const Json::Value& other : others) {
        Json::Value changedRoot = root;
        At(changedRoot, leaf.path) = other;
        if (experiment(changedRoot)) showed = true;
    }
    return showed || experiment(Without(root, {leaf.path}));
}

}  // namespace protofix::tool
