// Whether the Windows under this test is Wine, whose HTTP says less of what went wrong than the real one's documents.
#pragma once

namespace kzn::test {

bool runsUnderWine() noexcept;

}  // namespace kzn::test
