// What the tray item shows, and what has been made of it for the tray.
#pragma once

#include "platform/linux/style/QtImageRenderer.h"

#include <QImage>
#include <QList>

#include <algorithm>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <utility>
#include <variant>

namespace sonvara {

/// What an icon shows: an image of ours (not null), a symbol, or nothing. A value.
using IconContent = std::variant<std::monostate, std::shared_ptr<const QtImage>, Symbol>;

/// The pictures of `content`, one for each of `QtImage::sides`; none of nothing. A symbol is drawn here and now.
[[nodiscard]] QList<QImage> picturesOf(const IconContent& content, const RoleColors& colors);

/// Keeps what was made of the pictures, so that to show one again is only a swap. Main thread.
template <typename Made>
class IconCache {
public:
    using Make = std::function<Made(QList<QImage>)>;

    explicit IconCache(Make make) : make_(std::move(make)) {}

    /// What `make` gives for `content`. Made once for as long as the colours stay.
    [[nodiscard]] Made get(const IconContent& content, const RoleColors& colors)
    {
        if (colors != colors_) made_.clear();
        colors_ = colors;
        const auto found = std::ranges::find(made_, content, &Entry::first);
        if (found != made_.end()) return found->second;
        if (made_.size() == kept) made_.pop_front();
        return made_.emplace_back(content, make_(picturesOf(content, colors))).second;
    }

private:
    using Entry = std::pair<IconContent, Made>;
    // A player that plays and one that does not; the symbol of the first moment does not come again.
    static constexpr std::size_t kept = 2;

    Make make_;
    RoleColors colors_;
    std::deque<Entry> made_;
};

}  // namespace sonvara
