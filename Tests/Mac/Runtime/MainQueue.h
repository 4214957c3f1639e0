// For the queues: the main thread's work, and work that waits for its turn.
//
// Threads: any.
#pragma once

#import "Tests/Mac/Runtime/Dispatch.h"
#import "Tests/Mac/Runtime/Workers.h"

namespace fake {

void postToMain(Work work);
// Runs on this worker; in turns, on one for all, when it is this work's turn.
void postToWorker(Worker* worker, Work work);

}  // namespace fake
