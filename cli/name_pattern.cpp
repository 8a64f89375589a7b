#include "cli/name_pattern.h"

#include "desktop/plist/text_encoding.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace velmoranth::cli {
namespace {

// UTF-8 sorts as its code points do, so letters are compared as they are written.
using Letter = std::string_view;

Letter takeLetter(std::string_view& text) {
    const Letter letter = text.substr(0, std::max<std::size_t>(desktop::characterLength(text), 1));
    text.remove_prefix(letter.size());
    return letter;
}

// As written in a pattern, a backslash before it left out. The last letter of all is a backslash if
// it is one.
Letter takeMeantLetter(std::string_view& pattern) {
    if (pattern.size() > 1 && pattern.front() == '\\') {
        pattern.remove_prefix(1);
    }
    return takeLetter(pattern);
}

// What one letter may be, or any run of letters.
struct Piece {
    bool isRun = false;
    bool isNegated = false;
    std::vector<std::pair<Letter, Letter>> ranges = {};  // with both ends

    [[nodiscard]] bool fits(Letter letter) const {
        const bool isWithin = std::any_of(ranges.begin(), ranges.end(), [&](const auto& range) {
            return range.first <= letter && letter <= range.second;
        });
        return isWithin != isNegated;
    }
};

// From behind "[" to behind its "]"; nothing, and nothing taken, when it is not closed.
std::optional<Piece> takeSet(std::string_view& pattern) {
    std::string_view rest = pattern;
    Piece set;
    if (rest.starts_with('!') || rest.starts_with('^')) {
        set.isNegated = true;
        rest.remove_prefix(1);
    }
    while (!rest.empty() && (set.ranges.empty() || rest.front() != ']')) {
        const Letter first = takeMeantLetter(rest);
        Letter last = first;
        if (rest.size() > 1 && rest[0] == '-' && rest[1] != ']') {
            rest.remove_prefix(1);
            last = takeMeantLetter(rest);
        }
        set.ranges.emplace_back(first, last);
    }
    if (rest.empty()) {
        return std::nullopt;
    }
    pattern = rest.substr(1);
    return set;
}

// `setsClose` becomes false with the first "[" that is not closed: nor is any behind it.
Piece takePiece(std::string_view& pattern, bool& setsClose) {
    const char first = pattern.front();
    if (first != '*' && first != '?' && first != '[') {
        const Letter letter = takeMeantLetter(pattern);
        return {.ranges = {{letter, letter}}};
    }
    const Letter special = takeLetter(pattern);
    if (first == '[') {
        std::optional<Piece> set = setsClose ? takeSet(pattern) : std::nullopt;
        setsClose = set.has_value();
        return set ? std::move(*set) : Piece{.ranges = {{special, special}}};
    }
    return {.isRun = first == '*', .isNegated = true};
}

std::vector<Piece> piecesOf(std::string_view pattern) {
    std::vector<Piece> pieces;
    bool setsClose = true;
    while (!pattern.empty()) {
        Piece piece = takePiece(pattern, setsClose);
        const bool isDouble = piece.isRun && !pieces.empty() && pieces.back().isRun;
        if (!isDouble) {
            pieces.push_back(std::move(piece));
        }
    }
    return pieces;
}

}  // namespace

bool fitsPattern(std::string_view name, std::string_view pattern) {
    const std::vector<Piece> pieces = piecesOf(pattern);
    auto piece = pieces.begin();
    // Behind the latest run, and the name there. An earlier run need not be longer for a fit, since
    // the latest one can take what that would.
    auto behindRun = pieces.end();
    std::string_view nameBehindRun;
    bool hasRun = false;
    while (true) {
        if (piece != pieces.end() && piece->isRun) {
            ++piece;
            behindRun = piece;
            nameBehindRun = name;
            hasRun = true;
            continue;
        }
        if (name.empty() && piece == pieces.end()) {
            return true;
        }
        if (!name.empty() && piece != pieces.end() && piece->fits(takeLetter(name))) {
            ++piece;
            continue;
        }
        if (!hasRun || nameBehindRun.empty()) {
            return false;
        }
        takeLetter(nameBehindRun);
        name = nameBehindRun;
        piece = behindRun;
    }
}

}  // namespace velmoranth::cli
