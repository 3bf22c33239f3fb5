#include "catalog_facts.h"

#include <algorithm>

namespace protofix::tool {

const KeyFacts& FactsOf(const SectionFacts& facts, const std::string& key) {
    static const KeyFacts kNone;
    const auto found = facts.byKey.find(key);
    return found != facts.byKey.end() ? found->second : kNone;
}

std::vector<std::string> WholeNames(const FieldBits& fields, const Parts& parts) {
    std::set<std::string> names;
    for (const auto& [field, bits] : fields) names.insert(field);
    // The deepest elements first, so that their owners can be named whole in turn.
    std::vector<std::string> owners;
    for (const auto& [owner, members] : parts) owners.push_back(owner);
    std::sort(owners.begin(), owners.end(), [](const std::string& a, const std::string& b) {
        return std::count(a.begin(), a.end(), '.') > std::count(b.begin(), b.end(), '.');
    });
    for (const std::string& owner : owners) {
        const std::set<std::string>& members = parts.at(owner);
        if (std::includes(names.begin(), names.end(), members.begin(), members.end())) {
            for (const std::string& member : members) names.erase(member);
            names.insert(owner);
        }
    }
    return std::vector<std::string>(names.begin(), names.end());
}

std::map<std::string, std::uint64_t> FilledBits(const SectionFacts& facts) {
    std::map<std::string, std::uint64_t> all;
    for (const auto& [key, kf] : facts.byKey) {
        for (const auto& [field, bits] : kf.fills) all[field] |= bits;
    }
    return all;
}

std::uint64_t OwnBits(const KeyFacts& kf, bool isFlag, const std::string& field,
                      const std::map<std::string, std::uint64_t>& filledBits) {
    if (!isFlag) return 0;
    const auto fills = kf.fills.find(field);
    const auto from = kf.writtenFrom.find(field);
    const auto all = filledBits.find(field);
    if (fills == kf.fills.end() || from == kf.writtenFrom.end() || all == filledBits.end()) {
        return 0;
    }
    const std::uint64_t bits = fills->second;
    return bits != 0 && from->second == bits && (all->second & ~bits) != 0 ? bits : 0;
}

}  // namespace protofix::tool
