#include "PageGenerator.h"

#include "x/PostMapping.h"

#include <benchmark/benchmark.h>

namespace mirel {
namespace {

void mapsPages(benchmark::State& state)
{
    const QByteArray page = PageGenerator().page(0);
    qsizetype envelopeBytes = 0;
    for (auto unused : state) {
        const ParsedBookmarkPage parsed = postMapping::parseBookmarkPage(page);
        envelopeBytes = 0;
        for (const SyncedBookmark& item : parsed.items)
            envelopeBytes += item.rawJSON.size() / PageGenerator::postsPerPage;
        benchmark::DoNotOptimize(parsed.items.data());
    }
    state.counters["posts"] = benchmark::Counter(
        static_cast<double>(state.iterations() * PageGenerator::postsPerPage), benchmark::Counter::kIsRate);
    state.counters["envelopeBytes"] = static_cast<double>(envelopeBytes);
    state.counters["pageBytes"] = static_cast<double>(page.size());
}
BENCHMARK(mapsPages)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace mirel

BENCHMARK_MAIN();
