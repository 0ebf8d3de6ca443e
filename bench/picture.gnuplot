# Cost against size, of the rows that scripts/bench has printed: gnuplot -e "rows='...'; picture='...'" bench/picture.gnuplot
set terminal svg size 720,420 font "sans-serif,13" background "white"
set output picture
set datafile separator "\t"
set title "Reading a listing: time beside the bare parser's on the same bytes"
set xlabel "workspaces in the listing"
set ylabel "ratio, the bare parser's time = 1"
set logscale x
set xrange [70:15000]
set yrange [0.9:2]
set grid ytics
set key top right
of(name) = sprintf("< sed -n 's|^%s \\([0-9]*\\) workspaces / [^\t]*\t\\([0-9.]*\\).*|\\1\t\\2|p' %s", name, rows)
plot of("read by hand a listing of") using 1:2 with linespoints lw 2 pt 7 title "careful work by hand, bytes to records", \
     of("read a listing of") using 1:2 with linespoints lw 2 pt 7 title "the library, bytes to records", \
     of("GetWkspList of") using 1:2 with linespoints lw 2 pt 7 title "the library, whole call over HTTP / socket and parser", \
     1 with lines dt 2 lc rgb "gray40" title "the bare parser"
