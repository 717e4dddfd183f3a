#pragma once

namespace ctapi::test {

// Whether the system's PC/SC service tells another program of a card in its first reader.
[[nodiscard]] bool ServiceSeesACard();

}  // namespace ctapi::test
