// A settings file in a folder of its own, and others who change it.
#pragma once

#include "helpers/RecordingLog.h"
#include "platform/linux/system/IniUserDefaults.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QString>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>

namespace sonvara::test {

class IniUserDefaultsFixture : public testing::Test {
protected:
    [[nodiscard]] QString path(const QString& name = "sonvara/sonvara.conf") const
    {
        return folder_.filePath(name);
    }

    /// Waits for the file longer than the program does: a busy machine is no slow disk.
    std::unique_ptr<IniUserDefaults> open()
    {
        return std::make_unique<IniUserDefaults>(path().toStdString(), log_, std::chrono::seconds(20));
    }

    void makeFolder() const { ASSERT_TRUE(QDir(folder_.path()).mkpath("sonvara")); }

    /// Replaces the file at once, as careful programs do.
    void replace(const QByteArray& content) const
    {
        QSaveFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        ASSERT_TRUE(file.commit());
    }

    /// Empties the file and fills it again, as simple editors do.
    void overwrite(const QByteArray& content) const
    {
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    /// What the file holds when all that was set has been written.
    [[nodiscard]] QByteArray content(IniUserDefaults& defaults) const
    {
        EXPECT_TRUE(defaults.flush(std::chrono::seconds(20)));
        QFile file(path());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    QTemporaryDir folder_;
    RecordingLog log_;
};

}  // namespace sonvara::test
