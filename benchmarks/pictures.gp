# SPDX-License-Identifier: MIT
# Pictures of a table of results: share of the machine's limit against size, ours beside the peers.
#   gnuplot -c benchmarks/pictures.gp RESULTS.csv FOLDER
# Columns of the table (support/report.cpp): 1 routine, 2 size, 3 threads, 4 warm or cold, 5 contender, 12 share of the limit.
results = ARG1
folder = ARG2

set terminal svg noenhanced size 820,420 font "sans-serif,13" background "#ffffff"
set grid lt 1 lw 0.7 lc rgb "#d0d0d0"
set border 3 lc rgb "#555555"
set tics nomirror
set yrange [0:105]
set format y "%g %%"
set key outside right center Left reverse samplen 2 spacing 1.3 noautotitle

# Libraries keep their colours from picture to picture; ours stands out.
libraries = "ours OpenBLAS-SkylakeX OpenBLAS-Haswell BLIS reference Eigen CHOLMOD"
titles = "'this library' 'OpenBLAS, AVX-512' 'OpenBLAS, AVX2' 'BLIS' 'reference' 'Eigen' 'CHOLMOD'"
colours = "#c0392b #2471a3 #7fb3d5 #27ae60 #999999 #8e44ad #d68910"
width(i) = i == 1 ? 3 : 1.5

# What one picture shows: the cases of `routine` with so many `threads` whose sizes begin with `shape`, at the number after
# `key`; of each library the peer named `peer`.
points(i) = "awk -F, -v shape='\"".shape."' -v key='".key."' -v who='".word(libraries, i)."' -v peer='".peer."' " \
            ."'$1 == \"".routine."\" && $3 == ".threads." && index($2, shape) == 1 && index($5, who) == 1 && $4 == \"warm\" " \
            ."&& (i = index($2, key)) && (who == \"ours\" || who == \"Eigen\" || index($5 \",\", peer \",\")) " \
            ."{ print substr($2, i + length(key)) + 0, 100 * $12 }' '".results."' | sort -n"
measured(i) = strlen(system(points(i))) > 0
show = 'present = ""; do for [i = 1:words(libraries)] { if (measured(i)) { present = present." ".i } }; \
        if (words(present) > 1) { \
          set output folder."/".file.".svg"; set title heading; set xlabel across; set ylabel limit; \
          plot for [w in present] "< ".points(int(w)) with linespoints pt 7 ps 0.5 \
            lw width(int(w)) lc rgb word(colours, int(w)) title word(titles, int(w)); \
          unset output }'

set logscale x
set xtics (8, 16, 32, 64, 125, 250, 500, 1000, 2000, 4000)
across = "order n"

fused = "share of the multiply-add peak"
separate = "share of the multiply-and-add peak"
traffic = "share of the cache's or memory's rate"

routine = "eagemm"; shape = "NN n="; key = "n="; threads = 1; peer = "dgemm"; limit = fused
file = "matrix_product"; heading = "Matrix product, one thread (eagemm, dgemm)"
eval show

threads = 2; file = "matrix_product_two_threads"; heading = "Matrix product, two threads (eagemm, dgemm)"
eval show

routine = "easlff_nt"; shape = "n=m="; key = "n=m="; threads = 1; limit = separate
file = "front_elimination"; heading = "Front elimination, packed (easlff_nt); peers: dpotrf, full storage"; peer = "dpotrf"
eval show
file = "front_elimination_packed"; heading = "Front elimination, packed (easlff_nt); peers: dsptrf, packed"; peer = "dsptrf"
eval show

routine = "eaxfch2"; shape = "n="; key = "n="; peer = "dpotrf"
file = "cholesky"; heading = "Row-wise Cholesky, packed (eaxfch2); peers: dpotrf, full storage"
eval show

routine = "eaxeig"; peer = "dspevd"
file = "eigen_solver"; heading = "All eigenvalues and vectors, packed (eaxeig); peers: dspevd"
eval show

routine = "eaxinv"; shape = "mode=1"; peer = "dgetrf+dgetri"
file = "inversion"; heading = "General inversion (eaxinv, mode 1); peers: dgetrf and dgetri"
eval show

routine = "eagemv"; shape = "N n="; peer = "dgemv"; limit = traffic
file = "matrix_vector"; heading = "Matrix-vector product (eagemv N, dgemv)"
eval show

routine = "eaxmvm"; shape = "n=206763 "; key = "vectors="; peer = ""; limit = "share of one pass at the memory's rate"
set xtics (1, 2, 4, 8, 16, 32)
across = "vectors"
file = "sparse_product"; heading = "Symmetric sparse product, 206763 unknowns (eaxmvm)"
eval show
