#include "names.h"

#include <algorithm>
#include <cctype>

namespace protofix::tool {
namespace {

char Lower(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }

// Edits between two names, ignoring case (optimal string alignment: an adjacent swap is one
// edit); stops counting past limit.
std::size_t Distance(std::string_view a, std::string_view b, std::size_t limit) {
    const std::size_t n = a.size();
    const std::size_t m = b.size();
    if ((n > m ? n - m : m - n) > limit) return limit + 1;
    std::vector<std::vector<std::size_t>> d(n + 1, std::vector<std::size_t>(m + 1));
    for (std::size_t i = 0; i <= n; ++i) d[i][0] = i;
    for (std::size_t j = 0; j <= m; ++j) d[0][j] = j;
    for (std::size_t i = 1; i <= n; ++i) {
        for (std::size_t j = 1; j <= m; ++j) {
            const std::size_t cost = Lower(a[i - 1]) == Lower(b[j - 1]) ? 0 : 1;
            d[i][j] = std::min({d[i - 1][j] + 1, d[i][j - 1] + 1, d[i - 1][j - 1] + cost});
            if (i > 1 && j > 1 && Lower(a[i - 1]) == Lower(b[j - 2]) &&
                Lower(a[i - 2]) == Lower(b[j - 1])) {
                d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
            }
        }
    }
    return d[n][m];
}

}  // namespace

bool SameIgnoringCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(),
                                              [](char x, char y) { return Lower(x) == Lower(y); });
}

std::string Suggest(std::string_view name, const std::vector<std::string>& candidates) {
    if (std::find(candidates.begin(), candidates.end(), name) != candidates.end()) return "";
    for (const std::string& candidate : candidates) {
        if (SameIgnoringCase(name, candidate) && name != candidate) return candidate;
    }
    const std::size_t limit = name.size() <= 4 ? 1 : 2;
    std::string best;
    std::size_t bestDistance = limit + 1;
    bool tie = false;
    for (const std::string& candidate : candidates) {
        if (candidate == name) continue;
        const std::size_t distance = Distance(name, candidate, limit);
        if (distance < bestDistance) {
            best = candidate;
            bestDistance = distance;
            tie = false;
        } else if (distance == bestDistance && candidate != best) {
            tie = true;
        }
    }
    return bestDistance <= limit && !tie ? best : std::string();
}

std::string DidYouMean(std::string_view name, const std::vector<std::string>& candidates) {
    const std::string suggestion = Suggest(name, candidates);
    return suggestion.empty() ? std::string() : " (did you mean \"" + suggestion + "\"?)";
}

}  // namespace protofix::tool
