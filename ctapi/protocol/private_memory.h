#pragma once

// Data of cards stay in the memory of the process that reads them, and no longer than they are
// used. A process of ours that links this overwrites what it frees, except where a checking tool
// has taken over the memory itself.
namespace ctapi {

// Writes no image of the memory when the process crashes, and lets no other process of this user
// look into it. To be called at the start.
void KeepMemoryPrivate();

}  // namespace ctapi
