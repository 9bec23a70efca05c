#include "platform/linux/system/IniUserDefaults.h"

#include "platform/linux/system/IniFile.h"
#include "platform/linux/system/QtSerialQueue.h"
#include "ports/SystemLog.h"

#include <QStandardPaths>
#include <QThread>

#include <condition_variable>
#include <functional>
#include <future>
#include <map>
#include <mutex>
#include <optional>
#include <utility>

namespace sonvara {

namespace {

bool isTrue(const std::string& value)
{
    return value == "true" || value == "1";
}

}  // namespace

/// The file on its thread, and the values as all other threads see them.
class IniUserDefaults::Disk {
public:
    Disk(std::string path, SystemLog& log, std::chrono::milliseconds openLimit, std::function<void()> changed)
        : path_(std::move(path)),
          log_(log),
          openLimit_(openLimit),
          changed_(std::move(changed))
    {
        thread_.setObjectName(QStringLiteral("settings"));
        worker_.moveToThread(&thread_);
    }

    ~Disk()
    {
        worker_.post([this] {  // behind all that is to be written; nowhere, if nobody has used it
            file_.reset();
            thread_.quit();
        });
        thread_.wait();
    }

    // Any thread.
    IniFile::Values values()
    {
        std::call_once(opened_, [this] { open(); });
        const std::lock_guard lock(mutex_);
        return values_;
    }

    // Main thread; returns whether the value is another one.
    bool set(const std::string& key, const std::string& value)
    {
        (void)values();  // opens the file
        const std::lock_guard lock(mutex_);
        unsaved_.insert_or_assign(key, value);
        worker_.post([this] { save(); });
        return mix();
    }

    bool flush(std::chrono::milliseconds limit)
    {
        if (!thread_.isRunning()) return true;
        const auto isReached = std::make_shared<std::promise<void>>();
        worker_.post([isReached] { isReached->set_value(); });  // behind all that is to be written
        return isReached->get_future().wait_for(limit) == std::future_status::ready;
    }

private:
    void open()
    {
        thread_.start();
        worker_.post([this] {
            file_.emplace(QString::fromStdString(path_));
            QObject::connect(&*file_, &IniFile::changed, &*file_, [this] { publish(); });
            publish();
        });
        std::unique_lock lock(mutex_);
        isLate_ = !read_.wait_for(lock, openLimit_, [this] { return isOpen_; });
    }

    // The following on the file's thread.

    void save()
    {
        {
            const std::lock_guard lock(mutex_);
            saving_ = std::exchange(unsaved_, {});
        }
        if (saving_.empty()) return;  // what came before has been saved with it
        if (!file_->add(saving_)) reportFailure();
        publish();
    }

    void publish()
    {
        auto values = file_->values();
        const std::lock_guard lock(mutex_);
        onDisk_ = std::move(values);
        saving_.clear();
        const bool isRead = std::exchange(isOpen_, true) || isLate_;  // by anybody so far
        if (mix() && isRead) main_.post(changed_);
        read_.notify_all();
    }

    void reportFailure()
    {
        if (std::exchange(isFailureReported_, true)) return;
        Logger(log_, "UserDefaults").error({{"The settings cannot be written to "}, {path_}});
    }

    // With the lock held: lays those that are to be written over the values on the disk. Whether any is new.
    bool mix()
    {
        const auto before = std::exchange(values_, onDisk_);
        for (const auto* later : {&saving_, &unsaved_})
            for (const auto& [key, value] : *later) values_.insert_or_assign(key, value);
        return values_ != before;
    }

    const std::string path_;
    SystemLog& log_;
    const std::chrono::milliseconds openLimit_;
    const std::function<void()> changed_;
    std::once_flag opened_;
    QThread thread_;
    QtSerialQueue main_;
    QtSerialQueue worker_;  // of the file's thread
    std::optional<IniFile> file_;
    bool isFailureReported_ = false;

    std::mutex mutex_;  // guards what follows; never held while the disk works
    std::condition_variable read_;
    IniFile::Values onDisk_;
    std::map<std::string, std::string> unsaved_;
    std::map<std::string, std::string> saving_;
    IniFile::Values values_;
    bool isOpen_ = false;
    bool isLate_ = false;
};

IniUserDefaults::IniUserDefaults(const std::string& path, SystemLog& log, std::chrono::milliseconds openLimit)
    : disk_(std::make_unique<Disk>(path, log, openLimit, [this] { changed_.call(); }))
{}

IniUserDefaults::~IniUserDefaults() = default;

std::string IniUserDefaults::standardPath()
{
    const auto folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return folder.toStdString() + "/sonvara/sonvara.conf";
}

bool IniUserDefaults::hasObject(const std::string& key) const
{
    return disk_->values().contains(key);
}

bool IniUserDefaults::boolForKey(const std::string& key) const
{
    const auto value = stringForKey(key);
    return value && isTrue(*value);
}

std::optional<std::string> IniUserDefaults::stringForKey(const std::string& key) const
{
    const auto values = disk_->values();
    const auto entry = values.find(key);
    return entry == values.end() ? std::nullopt : entry->second;
}

void IniUserDefaults::setBool(const std::string& key, bool value)
{
    set(key, value ? "true" : "false");
}

void IniUserDefaults::setString(const std::string& key, const std::string& value)
{
    set(key, QString::fromStdString(value).toStdString());  // well-formed, as it comes back from the disk
}

void IniUserDefaults::set(const std::string& key, const std::string& value)
{
    if (disk_->set(key, value)) changed_.call();
}

Subscription IniUserDefaults::onChange(std::function<void()> changed)
{
    (void)disk_->values();  // what others change is noticed once the file is open
    return changed_.add(std::move(changed));
}

bool IniUserDefaults::flush(std::chrono::milliseconds limit)
{
    return disk_->flush(limit);
}

}  // namespace sonvara
