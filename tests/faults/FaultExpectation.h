// What a frame should answer when one of its calls to the host fails, derived from which call of the frame it is.
#pragma once

#include "tests/faults/FaultScene.h"

#include <cstddef>
#include <string>
#include <vector>

namespace kovalune::test {

inline constexpr PF_Err kFault = PF_Err_INVALID_INDEX;

class FaultExpectation {
public:
    /// `log` is that of a frame in which nothing failed.
    FaultExpectation(const FaultScene& scene, std::vector<host::judge::CallRecord> log);

    /// The calls that can fail, in order.
    const std::vector<host::judge::CallRecord>& calls() const { return calls_; }

    /// The frame's code when the call at `at` fails, all before it being as in the good frame.
    PF_Err codeOf(std::size_t at) const;

    /// A release of host memory that found no handle suite: the block stays with the host.
    bool leavesBlock(std::size_t at) const;

private:
    PF_Err codeOfSuite(std::size_t at) const;
    bool needsWorld(std::size_t number) const;
    bool isLockOfBlock(std::size_t at) const;
    bool isIgnored(std::size_t at) const;
    bool isPixelsConversion(std::size_t at) const;
    bool isCutOfLayer(std::size_t at) const;
    bool isCutOfOutput(std::size_t at) const;
    std::size_t countBefore(std::size_t at, const std::string& call) const;

    const FaultScene& scene_;
    std::vector<host::judge::CallRecord> calls_;
    std::vector<std::size_t>
        colours_; ///< places of the conversions of listed colours: two of Base, one a stage
};

} // namespace kovalune::test
