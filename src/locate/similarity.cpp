#include "locate/similarity.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace locate {

namespace {

// Letters to change, to add or to leave out.
int editsBetween(const QString& text, const QString& other)
{
    std::vector<int> row(static_cast<std::size_t>(other.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (int i = 0; i < text.size(); ++i) {
        int diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 1; j < row.size(); ++j) {
            const int changed = diagonal + (text.at(i) == other.at(static_cast<int>(j) - 1) ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min(changed, std::min(row[j], row[j - 1]) + 1);
        }
    }
    return row.back();
}

} // namespace

int distanceBetween(const QString& text, const QString& other)
{
    const int longest = 60;
    const int shortestPart = 2;
    if (text.size() > longest || other.size() > longest)
        return farthest;
    const QString lower = text.toLower();
    const QString otherLower = other.toLower();
    if (lower == otherLower)
        return 0;
    const int shorter = static_cast<int>(qMin(lower.size(), otherLower.size()));
    if (shorter >= shortestPart && (lower.contains(otherLower) || otherLower.contains(lower)))
        return 1;
    const int letters = editsBetween(lower, otherLower);
    return 2 * letters <= shorter ? letters + 1 : farthest;
}

} // namespace locate
