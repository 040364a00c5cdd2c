// Takes ranges out of ranges, side by side.
#include "directory/RangeLimits.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "directory/OwnStreets.h"

namespace ambrel::directory {
namespace {

Bounds withSide(Bounds bounds, std::size_t side, std::uint32_t first, std::uint32_t last) {
    bounds[side] = static_cast<std::uint16_t>(first <= last ? first : 0);
    bounds[side + 1] = static_cast<std::uint16_t>(first <= last ? last : 0);
    return bounds;
}

} // namespace

std::vector<Bounds> numbersOutside(const Bounds& bounds, const Bounds& others) {
    std::vector<Bounds> ranges;
    const auto add = [&](std::size_t side, std::uint32_t first, std::uint32_t last) {
        if (first != 0 && first <= last) {
            ranges.push_back(withSide({}, side, first, last));
        }
    };
    for (const std::size_t side : {0U, 2U}) {
        const std::uint32_t first = bounds[side], last = bounds[side + 1], begin = others[side],
                            end = others[side + 1];
        if (begin == 0 || end < begin) {
            add(side, first, last);
        } else {
            add(side, first, std::min(last, begin - std::min(begin, 2U)));
            add(side, std::max(first, end + 2), last);
        }
    }
    return ranges;
}

Bounds limited(const Bounds& bounds, std::span<const Bounds> taken, const Bounds& before) {
    std::vector<Bounds> left = numbersOutside(bounds, {});
    for (const Bounds& one : taken) {
        std::vector<Bounds> rest;
        for (const Bounds& range : left) {
            std::ranges::move(numbersOutside(range, one), std::back_inserter(rest));
        }
        left = std::move(rest);
    }
    Bounds result{};
    for (const std::size_t side : {0U, 2U}) {
        std::pair<std::uint32_t, std::uint32_t> best; // shared, length
        for (const Bounds& range : left) {
            const std::pair now(numbersShared(range, before), numbersIn(range));
            if (range[side] != 0 && now > best) {
                best = now;
                result = withSide(result, side, range[side], range[side + 1]);
            }
        }
    }
    return result;
}

} // namespace ambrel::directory
