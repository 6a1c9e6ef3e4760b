// The actions of an instance that are about frames.
#pragma once

#include "adapters/openfx/Instance.h"
#include "hostapi/HostApi.h"

namespace kovalune::openfx {

/// The fraction nearest to a render scale whose denominator is 1 to 32767; 1 for what is no scale.
PF_RationalScale nearestFraction(double scale);

/// The host's answer to each action; the sets are those of its arguments.
Status render(Instance& instance, const PropertySet& in);
/// kOk where the frame is the source's copy whatever is in it.
Status isIdentity(const Instance& instance, const PropertySet& in, const PropertySet& out);
Status regionOfDefinition(const Instance& instance, const PropertySet& in, const PropertySet& out);
/// All of each clip: what a pixel becomes may depend on any other one.
Status regionsOfInterest(const Instance& instance, const PropertySet& in, const PropertySet& out);
Status clipPreferences(const Instance& instance, const PropertySet& out);

} // namespace kovalune::openfx
