// A move of the mouse through nested views: one dispatch by the depth of the nest, and how often it
// asks for memory.

#include "UI/Internal/ViewBridge.h"
#include "UI/View.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace {

std::size_t sAllocations = 0;

} // namespace

[[gnu::noinline]] void* operator new(std::size_t size) {
    ++sAllocations;
    if (void* memory = std::malloc(size ? size : 1))
        return memory;
    throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

using namespace Kestrin;

class TrackingView : public View {
public:
    bool SupportsFeature(ViewFeature) override { return true; }
    void DoMousePosition(MousePosInfo, const Point& where, unsigned int) override {
        benchmark::DoNotOptimize(where);
    }
};

/// One view in the other, all of the same size.
std::vector<std::unique_ptr<TrackingView>> Nest(std::size_t depth) {
    std::vector<std::unique_ptr<TrackingView>> views;
    for (std::size_t i = 0; i < depth; ++i) {
        views.push_back(std::make_unique<TrackingView>());
        views.back()->SetRect({0, 0, 100, 100});
        if (i > 0)
            views.back()->PlaceInView(views[i - 1].get(), 0, 0);
    }
    return views;
}

void MouseMove(benchmark::State& state, std::size_t depth) {
    auto views = Nest(depth);
    NativeMouseEvent move;
    move.where = {50, 50};
    ViewBridge& root = BridgeOf(*views.front());
    const std::size_t before = sAllocations;
    for (auto _ : state)
        root.HandleMouseMoved(move);
    state.counters["allocations"] = static_cast<double>(sAllocations - before);
    while (!views.empty())
        views.pop_back();
}

const bool kRegistered = [] {
    for (const std::size_t depth : {10, 100, 1000}) {
        const std::string name = "MouseMove/" + std::to_string(depth) + " nested views/ours";
        benchmark::RegisterBenchmark(name.c_str(), MouseMove, depth);
    }
    return true;
}();

} // namespace
