# The voice itself: jobs, the two threads behind each voice, and the events on their way back.
add_library(tessavox_voice STATIC
  event_queue.cpp
  file_reading.cpp
  file_stream.cpp
  frame_composer.cpp
  live_reading.cpp
  pacer.cpp
  playback.cpp
  sound_ring.cpp
  speech_service.cpp
  synthesis_worker.cpp
  system_voice.cpp
  utterance_events.cpp
  wave_playing.cpp
)
target_link_libraries(tessavox_voice
  PUBLIC tessavox_voice_text tessavox_voice_engines tessavox_voice_sound tessavox_base
  PRIVATE Threads::Threads)
