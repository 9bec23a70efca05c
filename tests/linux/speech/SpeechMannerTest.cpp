// What reaches the daemon: the text as data, and no settings but those asked for.
#include "StubFixture.h"

#include <algorithm>
#include <cmath>

namespace sonvara::test {

class SpeechMannerTest : public StubFixture {
protected:
    std::vector<std::string> commandsWith(const std::string& word) const
    {
        std::vector<std::string> found = server.commands();
        std::erase_if(found, [&](const std::string& c) { return c.find(word) == std::string::npos; });
        return found;
    }
    void say(const SpeechUtterance& utterance)
    {
        server.setEndings(Endings::atOnce);
        if (!voice) start();
        const std::size_t before = ears->ends().size();
        speak(utterance);
        ears->waitForEnds(before + 1);
    }
    /// What the daemon is told to speak for `line`.
    std::string spoken(const std::string& line)
    {
        say({line, std::nullopt, 0.5});
        return server.lines().empty() ? std::string() : server.lines().back();
    }
};

TEST_F(SpeechMannerTest, theUsualRateAndVoiceSetNothing)
{
    say({"line", std::nullopt, 0.5});
    auto commands = server.commands();
    ASSERT_FALSE(commands.empty());
    EXPECT_TRUE(commands[0].starts_with("SET SELF CLIENT_NAME"));
    EXPECT_TRUE(commands[0].ends_with(":sonvara:main\"")) << commands[0];
    commands.erase(commands.begin());
    EXPECT_EQ(commands, (std::vector<std::string>{
                            "SET SELF NOTIFICATION BEGIN on", "SET SELF NOTIFICATION END on",
                            "SET SELF NOTIFICATION CANCEL on", "SET SELF PRIORITY message", "SPEAK"}));
}

TEST_F(SpeechMannerTest, linesQueueByAPriorityThatIsSetOncePerConnection)
{
    say({"one", std::nullopt, 0.5});
    say({"two", std::nullopt, 0.5});
    EXPECT_EQ(commandsWith("PRIORITY"), std::vector<std::string>{"SET SELF PRIORITY message"});
    const auto commands = server.commands();
    const auto first = [&](const std::string& command) { return std::ranges::find(commands, command); };
    EXPECT_LT(first("SET SELF PRIORITY message"), first("SPEAK"));
    EXPECT_EQ(commandsWith("SPEAK").size(), 2U);
}

TEST_F(SpeechMannerTest, aVoiceSetsTheLanguageOnce)
{
    say({"one", SpeechVoice{"de-DE"}, 0.5});
    say({"two", SpeechVoice{"de-DE"}, 0.5});
    EXPECT_EQ(commandsWith("LANGUAGE"), std::vector<std::string>{"SET SELF LANGUAGE de-DE"});
    EXPECT_EQ(server.lines().size(), 2U);
}

TEST_F(SpeechMannerTest, ratesMapOntoTheDaemonsScale)
{
    for (const double rate : {0.0, 0.25, 0.75, 0.998, 7.0}) say({"line", std::nullopt, rate});
    EXPECT_EQ(commandsWith("RATE"), (std::vector<std::string>{"SET SELF RATE -100", "SET SELF RATE -50",
                                                              "SET SELF RATE 50", "SET SELF RATE 100"}));
}

TEST_F(SpeechMannerTest, whatIsNoRateSetsNone)
{
    say({"line", std::nullopt, std::nan("")});
    EXPECT_TRUE(commandsWith("RATE").empty());
    EXPECT_EQ(server.lines().size(), 1U);
}

TEST_F(SpeechMannerTest, theUserSettingsAreBackOnANewConnection)
{
    say({"one", SpeechVoice{"de-DE"}, 1.0});
    say({"two", std::nullopt, 0.5});
    EXPECT_EQ(commandsWith("CLIENT_NAME").size(), 2U);
    EXPECT_EQ(commandsWith("LANGUAGE").size(), 1U);
    EXPECT_TRUE(server.waitForConnections(1));
}

TEST_F(SpeechMannerTest, aVoiceThatIsNoLanguageSetsNothing)
{
    say({"one", SpeechVoice{"de\r\nCANCEL ALL"}, 0.5});
    EXPECT_TRUE(commandsWith("LANGUAGE").empty());
    EXPECT_EQ(server.lines().size(), 1U);
}

TEST_F(SpeechMannerTest, aStopReachesTheLineOfAnotherManner)
{
    start();
    speak("one");
    ASSERT_TRUE(server.waitForLines(1));
    voice->stopSpeaking();
    speak({"two", SpeechVoice{"de-DE"}, 0.5});
    ASSERT_TRUE(server.waitForLines(2));
    EXPECT_TRUE(server.waitForCommand("CANCEL SELF"));
}

TEST_F(SpeechMannerTest, theLineIsData)
{
    EXPECT_EQ(spoken("."), ".");
    EXPECT_EQ(spoken("...and a dot"), "...and a dot");
    EXPECT_EQ(spoken("<speak>A & B</speak>"), "<speak>A & B</speak>");
    EXPECT_EQ(spoken("%s%n \\ \" '"), "%s%n \\ \" '");
    EXPECT_EQ(spoken("one\r\n.\r\nCANCEL ALL\r\n"), "one  .  CANCEL ALL  ");
    EXPECT_EQ(spoken(std::string("a\0b", 3)), "a b");
    EXPECT_EQ(spoken("caf\xc3\xa9 \xff\xc3 caf\xc3"), "caf\xc3\xa9    caf ");
    EXPECT_TRUE(std::ranges::none_of(server.commands(), [](auto& c) { return c.starts_with("CANCEL"); }));
}

TEST_F(SpeechMannerTest, aVeryLongLineIsCut)
{
    EXPECT_EQ(spoken(std::string(1 << 20, 'a')), std::string(longestLine, 'a'));
}

TEST_F(SpeechMannerTest, theLanguageIsThatOfTheLocale)
{
    environment.values = {{"LANG", "de_DE.UTF-8"}};
    start();
    EXPECT_EQ(voice->currentLanguageCode(), "de-DE");
    ASSERT_TRUE(voice->voiceForLanguage("de-DE").has_value());
    EXPECT_EQ(voice->voiceForLanguage("de-DE")->identifier, "de-DE");
    EXPECT_FALSE(voice->voiceForLanguage("en-US").has_value());
    EXPECT_FALSE(voice->voiceForLanguage("de\r\nCANCEL ALL").has_value());
    EXPECT_FALSE(voice->voiceForLanguage("").has_value());
}

}  // namespace sonvara::test
