#include "platform/linux/tray/IconCache.h"

#include "ui/StatusIcon.h"

#include <gtest/gtest.h>

namespace sonvara::test {

namespace {

const RoleColors light = RoleColors::on(Qt::white, Qt::black);
const RoleColors dark = RoleColors::on(Qt::black, Qt::white);

class IconCacheTest : public testing::Test {
protected:
    int makings = 0;
    IconCache<QColor> cache{[this](const QList<QImage>& pictures) {
        ++makings;
        return pictures.isEmpty() ? QColor() : pictures.last().pixelColor(48, 48);  // in the record's label
    }};
    IconContent silent = std::make_shared<const QtImage>(statusIcon(false));
    IconContent playing = std::make_shared<const QtImage>(statusIcon(true));
    IconContent note = Symbol{"checkmark.circle.fill", ""};
};

TEST_F(IconCacheTest, MakesEachContentOnce)
{
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(cache.get(silent, light), light.label);
        EXPECT_EQ(cache.get(playing, light), light.systemGreen);
    }
    EXPECT_EQ(makings, 2);
}

TEST_F(IconCacheTest, MakesAllAnewInOtherColors)
{
    for (int i = 1; i <= 3; ++i) {
        EXPECT_EQ(cache.get(silent, light), light.label);
        EXPECT_EQ(cache.get(silent, dark), dark.label);
        EXPECT_EQ(cache.get(playing, dark), dark.systemGreen);
        EXPECT_EQ(makings, 3 * i);
    }
    EXPECT_EQ(cache.get(silent, dark.withHalo()), dark.label);
    EXPECT_EQ(makings, 10) << "the halo is a colour, too";
}

TEST_F(IconCacheTest, KeepsNotMoreThanTwo)
{
    std::weak_ptr<const QtImage> first = std::get<std::shared_ptr<const QtImage>>(silent);
    EXPECT_EQ(cache.get(std::exchange(silent, {}), light), light.label);
    EXPECT_FALSE(first.expired());
    EXPECT_EQ(cache.get(playing, light), light.systemGreen);
    EXPECT_FALSE(first.expired());
    EXPECT_TRUE(cache.get(note, light).isValid());
    EXPECT_TRUE(first.expired());
}

TEST_F(IconCacheTest, ShowsNothingOfNothing)
{
    EXPECT_FALSE(cache.get({}, light).isValid());
}

}  // namespace

}  // namespace sonvara::test
