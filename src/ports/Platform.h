// All ports together: what the system needs of a desktop.
#pragma once

namespace sonvara {

class Application;
class Clock;
class Environment;
class FileManager;
class GlobalQueue;
class ImageRenderer;
class LoginItem;
class MainQueue;
class NotificationCenter;
class Pasteboard;
class ProcessLauncher;
class ScriptRunner;
class SpeechSynthesizer;
class StatusBar;
class SystemLog;
class UserDefaults;
class Windows;

/// References to one implementation of each port. Made once, in a platform's `main`, before the
/// application; every port outlives everything that was given the platform.
struct Platform {
    Application& application;
    MainQueue& mainQueue;
    GlobalQueue& globalQueue;
    Clock& clock;
    Environment& environment;
    FileManager& fileManager;
    ProcessLauncher& processLauncher;
    ScriptRunner& scriptRunner;
    NotificationCenter& notificationCenter;
    SpeechSynthesizer& speechSynthesizer;
    UserDefaults& userDefaults;
    SystemLog& systemLog;
    StatusBar& statusBar;
    ImageRenderer& imageRenderer;
    Windows& windows;
    Pasteboard& pasteboard;
    LoginItem& loginItem;
};

}  // namespace sonvara
