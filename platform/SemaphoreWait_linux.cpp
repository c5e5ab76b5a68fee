#include <sys/ipc.h>
#include <sys/sem.h>

#include <ctime>

#include "platform/SemaphoreWait.h"

bool TakeSemaphore(int set, std::chrono::milliseconds limit) {
  sembuf take = {0, -1, SEM_UNDO};
  if (limit.count() == 0) {
    take.sem_flg |= IPC_NOWAIT;
    return semop(set, &take, 1) == 0;
  }
  const timespec time = {limit.count() / 1000, limit.count() % 1000 * 1000000};
  return semtimedop(set, &take, 1, &time) == 0;
}
