#include "platform/linux/tray/QtStatusMenu.h"

#include "support/Text.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <tuple>

namespace sonvara {

namespace {

// In bytes, more than any screen shows. Laying out a title of a megabyte would take seconds, at every look at
// the player, here and in the host.
constexpr std::size_t longestText = 4000;

void shorten(std::string& text)
{
    if (text.size() <= longestText) return;
    text.resize(text::prefix(text, longestText).size());
    text += "…";
}

/// Whether choosing `b` does what choosing `a` did, as far as can be seen.
bool meansTheSame(const MenuItem& a, const MenuItem& b)
{
    if (a.isSeparator || b.isSeparator) return a.isSeparator && b.isSeparator;
    if (!a.action && !b.action) return true;
    return a.action && b.action && a.title == b.title;
}

/// Whether a view that shows `a` would show `b` alike. Items that mean something else have other ids.
bool looksTheSame(const QtStatusMenu::Entry& a, const QtStatusMenu::Entry& b)
{
    const auto look = [](const QtStatusMenu::Entry& entry) {
        const MenuItem& item = entry.item;
        return std::tie(entry.id, item.isSeparator, item.title, item.attributedTitle, item.isEnabled,
                        item.isChecked);
    };
    return look(a) == look(b);
}

}  // namespace

QtStatusMenu::QtStatusMenu(std::chrono::milliseconds gathering)
{
    publishing_.setSingleShot(true);
    publishing_.setInterval(gathering);
    connect(&publishing_, &QTimer::timeout, this, &QtStatusMenu::itemsChanged);
}

void QtStatusMenu::setItems(std::vector<MenuItem> items)
{
    std::vector<Entry> entries;
    entries.reserve(items.size());
    for (auto& item : items) {
        const int id = idFor(entries.size(), item);
        shorten(item.title);
        if (item.attributedTitle) shorten(item.attributedTitle->text);
        entries.push_back({id, std::move(item)});
    }
    const bool isNews = !std::ranges::equal(entries_, entries, looksTheSame);
    entries_ = std::move(entries);
    // Anew for each change, a stream of them would never be told.
    if (isNews && !publishing_.isActive()) publishing_.start();
}

void QtStatusMenu::publish()
{
    if (!publishing_.isActive()) return;
    publishing_.stop();
    Q_EMIT itemsChanged();
}

int QtStatusMenu::idFor(std::size_t position, const MenuItem& item)
{
    const bool kept = position < entries_.size() && meansTheSame(entries_[position].item, item);
    return kept ? entries_[position].id : ++lastId_;
}

Subscription QtStatusMenu::onWillOpen(std::function<void()> handler)
{
    return willOpen_.add(std::move(handler));
}

void QtStatusMenu::willOpen()
{
    willOpen_.call();
    publish();
}

void QtStatusMenu::choose(int id)
{
    const auto found = std::ranges::find(entries_, id, &Entry::id);
    if (found == entries_.end() || !found->item.isEnabled) return;
    const auto action = found->item.action;  // a copy: the action may replace the items
    if (action) action();
}

}  // namespace sonvara
