# The voice itself: jobs, the two threads behind each voice, and the events on their way back.
add_library(tessavox_voice STATIC
  event_queue.cpp
  pacer.cpp
  playback.cpp
  reading_ahead.cpp
  synthesis_worker.cpp
  system_voice.cpp
  text_source.cpp
  utterance_events.cpp
)
target_link_libraries(tessavox_voice
  PUBLIC tessavox_voice_text tessavox_voice_rendering tessavox_voice_sound tessavox_base
  PRIVATE Threads::Threads)
