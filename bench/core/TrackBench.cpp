// What is done with a track: read from a player's answer, chosen, judged, put into a line.
#include "monitor/MusicMonitor.h"
#include "speech/AnnouncementPolicy.h"
#include "speech/DJStyle.h"
#include "support/PlayerScripts.h"

#include <QString>
#include <QStringList>
#include <benchmark/benchmark.h>

#include <optional>
#include <string>

namespace sonvara {
namespace {

const std::string answer = "Harbour Lamps||The Null Sinks||First Light||true||false";

void parseOurs(benchmark::State& state)
{
    for (auto _ : state) benchmark::DoNotOptimize(MusicMonitor::parsePollOutput(musicSource, answer, 5));
}
BENCHMARK(parseOurs)->Name("parse the answer to a poll/ours");

void parseQt(benchmark::State& state)
{
    const auto text = QString::fromStdString(answer);
    for (auto _ : state) {
        auto parts = text.split(QStringLiteral("||"));
        for (auto& part : parts) part = part.trimmed();
        benchmark::DoNotOptimize(parts);
    }
}
BENCHMARK(parseQt)->Name("parse the answer to a poll/Qt");

void pickOne(benchmark::State& state)
{
    const auto music = MusicMonitor::parsePollOutput(musicSource, answer, 5);
    for (auto _ : state) benchmark::DoNotOptimize(MusicMonitor::pick(music, std::nullopt, music));
}
BENCHMARK(pickOne)->Name("pick one of two answers/ours");

void judge(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(AnnouncementPolicy::shouldAnnounce("Harbour Lamps", "The Null Sinks",
                                                                    "First Light (Remastered)", "Paper Boats",
                                                                    "The Null Sinks", "First Light"));
}
BENCHMARK(judge)->Name("decide about an announcement/ours");

void compose(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(
            DJ::offlineIntro("Harbour Lamps", "The Null Sinks", "First Light", true, DJ::openers[0]));
}
BENCHMARK(compose)->Name("compose the offline line/ours");

}  // namespace
}  // namespace sonvara
