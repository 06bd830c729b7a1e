#pragma once

namespace KX {

/// Calls `work`, and then `after` also when `work` throws, which goes on after it.
template <class Work, class After>
void runThen(const Work& work, const After& after)
{
    try {
        work();
    } catch (...) {
        after();
        throw;
    }
    after();
}

} // namespace KX
