//
// LineDiff.cpp
//

#include "LineDiff.h"

#include <algorithm>
#include <vector>

#include "TerminalText.h"

namespace zunokeymap {

namespace {

// The longest edit the shortest-edit search tries; its trace grows with the
// square of it.
constexpr int kMaxEdit = 2000;
constexpr int kContext = 3;

struct Line {
    std::string text;
    bool newline = true;  // false for a last line without its newline

    bool operator==(const Line& other) const {
        return text == other.text && newline == other.newline;
    }
};

std::vector<Line> splitLines(const std::string& text) {
    std::vector<Line> lines;
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t end = text.find('\n', start);
        if (end == std::string::npos) {
            lines.push_back({text.substr(start), false});
            break;
        }
        lines.push_back({text.substr(start, end - start), true});
        start = end + 1;
    }
    return lines;
}

// One step of the edit: ' ' keeps a[i] (= b[j]), '-' removes a[i], '+' adds b[j].
struct Step {
    char op;
    int i;
    int j;
};

// The shortest edit from a[lo..] to b[lo..] up to the common tail, appended to
// `steps`; false when it is longer than kMaxEdit.
bool shortestEdit(const std::vector<Line>& a, const std::vector<Line>& b, int lo, int aEnd,
                  int bEnd, std::vector<Step>& steps) {
    const int n = aEnd - lo;
    const int m = bEnd - lo;
    const int limit = std::min(n + m, kMaxEdit);
    // v[k + offset]: the furthest x on diagonal k; trace[d] keeps v[-d-1..d+1]
    // as it was before step d.
    const int offset = limit + 1;
    std::vector<int> v(2 * offset + 1, 0);
    std::vector<std::vector<int>> trace;
    for (int d = 0; d <= limit; ++d) {
        trace.emplace_back(v.begin() + offset - d - 1, v.begin() + offset + d + 2);
        for (int k = -d; k <= d; k += 2) {
            int x = (k == -d || (k != d && v[offset + k - 1] < v[offset + k + 1]))
                        ? v[offset + k + 1]
                        : v[offset + k - 1] + 1;
            int y = x - k;
            while (x < n && y < m && a[lo + x] == b[lo + y]) {
                ++x;
                ++y;
            }
            v[offset + k] = x;
            if (x < n || y < m) {
                continue;
            }
            std::vector<Step> reversed;
            for (int back = d; back >= 0; --back) {
                const std::vector<int>& before = trace[back];
                auto at = [&before, back](int diagonal) { return before[diagonal + back + 1]; };
                const int kk = x - y;
                const int prevK =
                    (kk == -back || (kk != back && at(kk - 1) < at(kk + 1))) ? kk + 1 : kk - 1;
                const int prevX = back == 0 ? 0 : at(prevK);
                const int prevY = back == 0 ? 0 : prevX - prevK;
                while (x > prevX && y > prevY) {
                    --x;
                    --y;
                    reversed.push_back({' ', lo + x, lo + y});
                }
                if (back > 0) {
                    if (x == prevX) {
                        --y;
                        reversed.push_back({'+', lo + x, lo + y});
                    } else {
                        --x;
                        reversed.push_back({'-', lo + x, lo + y});
                    }
                }
            }
            steps.insert(steps.end(), reversed.rbegin(), reversed.rend());
            return true;
        }
    }
    return false;
}

std::string range(int start, int count) {
    // An empty range names the line before it.
    const int first = count == 0 ? start : start + 1;
    return count == 1 ? std::to_string(first) : std::to_string(first) + "," + std::to_string(count);
}

void writeLine(std::string& out, char op, const Line& line) {
    out += op;
    out += ForTerminal(line.text);
    out += '\n';
    if (!line.newline) {
        out += "\\ No newline at end of file\n";
    }
}

}  // namespace

std::string UnifiedDiff(const std::string& before, const std::string& after,
                        const std::string& beforeName, const std::string& afterName) {
    const std::vector<Line> a = splitLines(before);
    const std::vector<Line> b = splitLines(after);
    int lo = 0;
    int aEnd = static_cast<int>(a.size());
    int bEnd = static_cast<int>(b.size());
    while (lo < aEnd && lo < bEnd && a[lo] == b[lo]) {
        ++lo;
    }
    while (aEnd > lo && bEnd > lo && a[aEnd - 1] == b[bEnd - 1]) {
        --aEnd;
        --bEnd;
    }
    if (lo == aEnd && lo == bEnd) {
        return std::string();
    }

    std::vector<Step> steps;
    steps.reserve(a.size() + b.size());
    for (int i = 0; i < lo; ++i) {
        steps.push_back({' ', i, i});
    }
    if (!shortestEdit(a, b, lo, aEnd, bEnd, steps)) {
        for (int i = lo; i < aEnd; ++i) {
            steps.push_back({'-', i, lo});
        }
        for (int j = lo; j < bEnd; ++j) {
            steps.push_back({'+', aEnd, j});
        }
    }
    for (int i = aEnd, j = bEnd; i < static_cast<int>(a.size()); ++i, ++j) {
        steps.push_back({' ', i, j});
    }

    std::string out = "--- " + ForTerminal(beforeName) + "\n+++ " + ForTerminal(afterName) + "\n";
    const int count = static_cast<int>(steps.size());
    int s = 0;
    while (s < count) {
        while (s < count && steps[s].op == ' ') {
            ++s;
        }
        if (s == count) {
            break;
        }
        // A hunk runs from kContext steps before this change to kContext
        // steps after the last change that is at most 2 * kContext away.
        const int first = std::max(0, s - kContext);
        int last = s;
        for (int t = s; t < count && t - last <= 2 * kContext; ++t) {
            if (steps[t].op != ' ') {
                last = t;
            }
        }
        const int end = std::min(count, last + kContext + 1);
        int aCount = 0;
        int bCount = 0;
        for (int t = first; t < end; ++t) {
            aCount += steps[t].op != '+' ? 1 : 0;
            bCount += steps[t].op != '-' ? 1 : 0;
        }
        out +=
            "@@ -" + range(steps[first].i, aCount) + " +" + range(steps[first].j, bCount) + " @@\n";
        for (int t = first; t < end; ++t) {
            const Step& step = steps[t];
            writeLine(out, step.op, step.op == '+' ? b[step.j] : a[step.i]);
        }
        s = end;
    }
    return out;
}

}  // namespace zunokeymap
