// Drawing a question: calm and flat, light or dark.
//
// Linux only. Main thread.

#ifndef PLATFORM_QUESTIONDRAWING_H_
#define PLATFORM_QUESTIONDRAWING_H_

#import "platform/Question.h"

// All of it, in a flipped view that has the focus.
void DrawQuestion(const Question& question);

#endif  // PLATFORM_QUESTIONDRAWING_H_
