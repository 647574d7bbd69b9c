;; Speaks the sentences of a file and tells when each token begins:
;;   festival -b '(set! voice voice_kal_diphone)' '(set! sentences "FILE")' '(set! folder "DIR")' festival_truth.scm
;; DIR/N.raw is the sound of sentence N, 16 bits, DIR/N.times its sample rate and the seconds.

(define (token_start token)
  (let ((word (item.daughter1 token)))
    (if word
        (item.feat word "R:SylStructure.daughter1.daughter1.R:Segment.segment_start")
        -1)))

(define (write_starts token file)
  (if token
      (begin
        (format file "%f\n" (token_start token))
        (write_starts (item.next token) file))))

(define (speak_sentence text number)
  (let ((utterance (utt.synth (eval (list 'Utterance 'Text text))))
        (times (fopen (string-append folder "/" number ".times") "w")))
    (format times "%d\n" (cadr (assoc 'sample_rate (wave.info (utt.wave utterance)))))
    (write_starts (utt.relation.first utterance 'Token) times)
    (fclose times)
    (utt.save.wave utterance (string-append folder "/" number ".raw") 'raw)))

(define (speak_all file number)
  (let ((text (readfp file)))
    (if (not (equal? text (eof-val)))
        (begin
          (speak_sentence text number)
          (speak_all file (+ number 1))))))

(voice)
(speak_all (fopen sentences "r") 0)
