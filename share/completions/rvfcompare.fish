# Completion of rvfcompare for fish.
complete -c rvfcompare -f
complete -c rvfcompare -a '-COMPARE= -POS_TOLERANCE= -LINE_TOLERANCE= -DIFFTOLERANCE= -DIFFERENCEFILE= -MESSAGEFILE='
complete -c rvfcompare -a '-MSGENCODE={ASCII,BIG5,EBCDIC,ISO88592,LATIN1,LATIN2,SJIS,UTF16,UTF16BE,UTF16LE,UTF8}'
complete -c rvfcompare -a '-SIMPLERETURN -DBCS_MODE=TRUE -CONTROLFILE='
complete -c rvfcompare -a '-CONTROLFILEENCODING={ISO88591,UTF8,UTF16BE,UTF16LE}'
complete -c rvfcompare -l help -d 'print a short help'
complete -c rvfcompare -l version -d 'print the version'
