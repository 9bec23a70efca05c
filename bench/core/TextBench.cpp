// The rules for text, beside the same done with Qt's.
#include "support/Text.h"
#include "ui/StatusBarController.h"

#include <QString>
#include <QStringList>
#include <QTextBoundaryFinder>
#include <benchmark/benchmark.h>

#include <string>

namespace sonvara {
namespace {

constexpr int width = 40;
const std::string line = "Coming your way: Für Elise, played by somebody whose name is rather long, from a "
                         "collection of pieces that "
                         "everybody has heard and nobody can place. One of your favorites!";
const std::string composed = "Caf\u00e9 del Mar, the twentieth anniversary edition";
const std::string decomposed = "Cafe\u0301 del Mar, the twentieth anniversary edition";

void wrapOurs(benchmark::State& state)
{
    for (auto _ : state) benchmark::DoNotOptimize(StatusBarController::wrap(line, width));
}
BENCHMARK(wrapOurs)->Name("wrap a line of 160 characters/ours");

qsizetype lengthInQt(const QString& text)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    while (finder.toNextBoundary() >= 0) ++count;
    return count;
}

QString wrapInQt(const QString& text)
{
    QString lines;
    QString current;
    for (const auto& word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        if (!current.isEmpty() && lengthInQt(current) + 1 + lengthInQt(word) <= width) {
            current += QLatin1Char(' ') + word;
            continue;
        }
        if (!current.isEmpty()) lines += current + QLatin1Char('\n');
        current = word;
    }
    return lines + current;
}

void wrapQt(benchmark::State& state)
{
    const auto text = QString::fromStdString(line);
    for (auto _ : state) benchmark::DoNotOptimize(wrapInQt(text));
}
BENCHMARK(wrapQt)->Name("wrap a line of 160 characters/Qt");

void equalOurs(benchmark::State& state)
{
    for (auto _ : state) benchmark::DoNotOptimize(text::equal(composed, decomposed));
}
BENCHMARK(equalOurs)->Name("compare two spellings of a title/ours");

void equalQt(benchmark::State& state)
{
    const auto one = QString::fromStdString(composed);
    const auto two = QString::fromStdString(decomposed);
    for (auto _ : state)
        benchmark::DoNotOptimize(one.normalized(QString::NormalizationForm_C) ==
                                 two.normalized(QString::NormalizationForm_C));
}
BENCHMARK(equalQt)->Name("compare two spellings of a title/Qt");

}  // namespace
}  // namespace sonvara
