/* The program's actions for code in other languages, such as the declarations that Shortcuts reads.
   Plain C. Main thread only. An index that is not below the count names no action. */
#pragma once

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* What an action's outcome carries beside its sentence. */
typedef enum embrix_action_value {
  EMBRIX_ACTION_VALUE_NONE = 0,
  EMBRIX_ACTION_VALUE_TEXT = 1,
  EMBRIX_ACTION_VALUE_NUMBER = 2
} embrix_action_value;

/* Texts are UTF-8 and good for the call that hands them over. */
typedef struct embrix_action_outcome {
  const char* error;  /* why it could not be done, a sentence; null when it was done */
  const char* dialog; /* the sentence to show or speak; may be empty; null after an error */
  const char* text;   /* null unless the value is a text */
  double number;      /* 0 unless the value is a number */
} embrix_action_outcome;

typedef void (*embrix_action_reply)(void* context, const embrix_action_outcome* outcome);

/* None before the program has started. */
size_t embrix_action_count(void);

/* An identifier in upper camel case, and what the user reads; null for no action. Good until the
   program offers other actions, which it does once, as it starts. */
const char* embrix_action_name(size_t index);
const char* embrix_action_title(size_t index);
embrix_action_value embrix_action_value_of(size_t index);

/* Calls back once, at once or later, also when the action could not be done or there is none. */
void embrix_action_perform(size_t index, void* context, embrix_action_reply reply);

#ifdef __cplusplus
}
#endif
