#include "Suggest.h"

#include <algorithm>
#include <utility>

#include "platform/text/CaseFold.h"
#include "platform/text/Utf.h"

namespace orv::cfg {

namespace {

constexpr std::size_t kMostOffers = 3;

/// Letters that must change, come, go or swap places to make one text of the other.
std::size_t Distance(const std::wstring& a, const std::wstring& b) {
    std::vector<std::size_t> before(b.size() + 1), last(b.size() + 1), now(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) last[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        now[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t change = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            now[j] = std::min({change, last[j] + 1, now[j - 1] + 1});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                now[j] = std::min(now[j], before[j - 2] + 1);
            }
        }
        std::swap(before, last);
        std::swap(last, now);
    }
    return last[b.size()];
}

}  // namespace

std::string DidYouMean(std::wstring_view name, const std::vector<std::wstring>& known) {
    const std::wstring wanted = ToLower(name);
    const std::size_t far = std::max<std::size_t>(2, wanted.size() / 3);
    std::vector<std::pair<std::size_t, std::wstring>> near;
    for (const std::wstring& candidate : known) {
        const std::wstring lower = ToLower(candidate);
        std::size_t distance = Distance(wanted, lower);
        // A part of a long name is near, too: "rdnap" for the whole key of a model.
        if (wanted.size() >= 3 && lower.find(wanted) != std::wstring::npos) distance = std::min(distance, far);
        if (distance <= far && distance < std::max(wanted.size(), lower.size())) near.emplace_back(distance, candidate);
    }
    std::stable_sort(near.begin(), near.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    if (near.size() > kMostOffers) near.resize(kMostOffers);
    if (near.empty()) return {};
    std::string text = "Did you mean ";
    for (std::size_t i = 0; i < near.size(); ++i) {
        if (i > 0) text += i + 1 == near.size() ? " or " : ", ";
        text += "\"" + ToUtf8(near[i].second) + "\"";
    }
    return text + "?";
}

}  // namespace orv::cfg
