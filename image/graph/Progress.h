// Progress of a render, as the filter graph reports it and as a host folds it into one ratio.
//
// Workers report (done, total) for their own band. Only thread 0 reaches the host; the host folds the
// pair through up to four nested levels. The graph uses level 1 for its nodes: the index counts the
// passes finished, the count is the total of passes of the graph, and the weight is the share of the node
// now running. A node of several passes counts them in level 0. An owner that counts stages of its own
// freezes level 1, and the graph then leaves the levels alone.
#pragma once

#include <array>
#include <cstdint>
#include <utility>

namespace Tw::Image {

struct ProgressLevel {
    uint64_t index = 0;   // units done
    uint64_t count = 0;   // units in all
    uint64_t weight = 0;  // units the current stage stands for
    bool frozen = false;  // set by an owner that counts this level itself
};

class ProgressLevels {
public:
    // Folds a worker's fraction through the levels, level 0 first; a level with a count under 2 passes the
    // fraction on unchanged.
    std::pair<uint64_t, uint64_t> fold(uint64_t done, uint64_t total) const {
        for (const ProgressLevel& level : levels) {
            if (level.count < 2) continue;
            if (total == 0) done = 0, total = 1;
            if (level.index < level.count) {
                done = level.index * 1000 + (level.weight * done * 1000) / total;
                total = level.count * 1000;
            } else {
                total = done = level.count * 1000;
            }
            if (total == 0) done = 0, total = 1;
        }
        if (total == 0) done = 0, total = 1;
        return {done, total};
    }

    void startRender(uint64_t totalPasses) {
        if (levels[1].frozen) return;
        levels[1] = {0, totalPasses, 1, false};
    }
    void startNode(int passCount) {
        if (levels[1].frozen) return;
        levels[0] = {};
        levels[1].weight = static_cast<uint64_t>(passCount);
    }
    void finishNode(int passCount) {
        if (levels[1].frozen) return;
        levels[1].index += static_cast<uint64_t>(passCount);
    }
    // A node that runs `count` passes in turn, each reporting 0..1 of its own.
    void startNodePasses(uint64_t count) {
        if (levels[0].frozen || levels[0].count != 0) return;
        levels[0] = {0, count, 1, false};
    }
    void finishNodePass() {
        if (!levels[0].frozen) ++levels[0].index;
    }

    std::array<ProgressLevel, 4> levels{};
};

// What a kernel calls as it goes: at most every 32 rows per worker. This is also where an abort takes
// effect, by a throw of Tw::Interrupted.
class Progress {
public:
    virtual ~Progress() = default;
    virtual void progress(uint64_t /*done*/, uint64_t /*total*/) {}
};

template <class Host>
class HostProgress final : public Progress {
public:
    HostProgress(Host& host, uint32_t threadIndex) : host_(host), threadIndex_(threadIndex) {}
    void progress(uint64_t done, uint64_t total) override { host_.reportProgress(threadIndex_, done, total); }

private:
    Host& host_;
    uint32_t threadIndex_;
};

}  // namespace Tw::Image
