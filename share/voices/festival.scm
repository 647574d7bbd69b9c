;; Reads lines from the standard input with festival and writes a wave file for each:
;;   festival -b "(define voice VOICE)" "(define folder \"FOLDER\")" festival.scm
;; Each line is one utterance, so that festival does not cut it anew.

(define (next_line) ; nil at the end
  (let ((line "") (character (getc)) (at_end nil))
    (set! at_end (null? character))
    (while (and character (not (equal? character 10)))
      (set! line (string-append line (format nil "%c" character)))
      (set! character (getc)))
    (if at_end nil line)))

(define (speak_lines)
  (let ((line (next_line)) (number 0))
    (while line
      (utt.save.wave
        (utt.synth (eval (list 'Utterance 'Text line)))
        (format nil "%s/%d.wav" folder number)
        'riff)
      (set! number (+ number 1))
      (set! line (next_line)))))

(voice)
(speak_lines)
