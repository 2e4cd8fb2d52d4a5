//
// CheckFindings.cpp
//

#include "check/CheckFindings.h"

#include <algorithm>
#include <cctype>

namespace zunokeymapmanager {
namespace check {

Finding MakeFinding(FindingKind kind, FindingSeverity severity, std::string path, int index,
                    std::string type, std::string message, std::string suggestion) {
    Finding finding;
    finding.kind = kind;
    finding.severity = severity;
    finding.path = std::move(path);
    finding.item_index = index;
    finding.item_type = std::move(type);
    finding.message = std::move(message);
    finding.suggestion = std::move(suggestion);
    return finding;
}

void SortByItem(std::vector<Finding>& findings) {
    const auto before = [](const Finding& a, const Finding& b) {
        return a.item_index < b.item_index;
    };
    if (std::is_sorted(findings.begin(), findings.end(), before)) {
        return;
    }
    const auto [low, high] = std::minmax_element(findings.begin(), findings.end(), before);
    const std::size_t span =
        static_cast<std::size_t>(static_cast<long long>(high->item_index) - low->item_index) + 1;
    if (span > findings.size() * 4) {
        std::stable_sort(findings.begin(), findings.end(), before);
        return;
    }
    // Indices are dense (the elements of one document): counted into place,
    // each finding moves once.
    const int first = low->item_index;
    std::vector<std::size_t> start(span + 1, 0);
    for (const Finding& finding : findings) {
        ++start[static_cast<std::size_t>(finding.item_index - first) + 1];
    }
    for (std::size_t k = 1; k <= span; ++k) {
        start[k] += start[k - 1];
    }
    std::vector<Finding> sorted(findings.size());
    for (Finding& finding : findings) {
        sorted[start[static_cast<std::size_t>(finding.item_index - first)]++] = std::move(finding);
    }
    findings.swap(sorted);
}

std::string ElementPath(int index) {
    return "keymaps[" + std::to_string(index) + "]";
}

namespace {

// Edit distance where a change of case alone costs a third of a change, so
// that "SwipeHold" is nearer "Swipehold" than anything else.
int distance(const std::string& a, const std::string& b) {
    std::vector<int> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) {
        row[j] = static_cast<int>(j) * 3;
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        int diagonal = row[0];
        row[0] = static_cast<int>(i) * 3;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const int above = row[j];
            const char x = a[i - 1];
            const char y = b[j - 1];
            const int change = x == y ? 0
                               : std::tolower(static_cast<unsigned char>(x)) ==
                                       std::tolower(static_cast<unsigned char>(y))
                                   ? 1
                                   : 3;
            row[j] = std::min({above + 3, row[j - 1] + 3, diagonal + change});
            diagonal = above;
        }
    }
    return row[b.size()];
}

}  // namespace

std::string NearestName(const std::string& word, const std::vector<std::string>& names) {
    // Names are short; long words are not typos of them, and skipping them
    // keeps a document full of long unknown members quick to check.
    constexpr std::size_t kLongest = 40;
    if (word.size() > kLongest) {
        return std::string();
    }
    std::string best;
    int bestDistance = 0;
    for (const std::string& name : names) {
        // At most a third of the longer word may differ (case changes count a
        // third of an edit), so names much longer or shorter cannot fit.
        const std::size_t longer = std::max(word.size(), name.size());
        const std::size_t shorter = std::min(word.size(), name.size());
        if ((longer - shorter) * 3 > longer) {
            continue;
        }
        const int d = distance(word, name);
        if (d > 0 && static_cast<std::size_t>(d) <= longer && (best.empty() || d < bestDistance)) {
            best = name;
            bestDistance = d;
        }
    }
    return best;
}

}  // namespace check
}  // namespace zunokeymapmanager
