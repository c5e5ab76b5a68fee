// Keeps the process alive when somebody takes the control block's memory away.

#ifndef LIBS_KXLOG_KXLOGSERVICE_BLOCKGUARD_H_
#define LIBS_KXLOG_KXLOGSERVICE_BLOCKGUARD_H_

// From here on SIGBUS within pShareMemory puts zeroes in the place of the block, which then reads
// as one that nobody has set up; SIGBUS anywhere else goes to the handler there was before. May be
// called again. For the thread that holds the log lock.
void GuardControlBlock();

#endif  // LIBS_KXLOG_KXLOGSERVICE_BLOCKGUARD_H_
