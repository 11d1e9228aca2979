#!/usr/bin/Rscript
# Times R's distributions on the inputs of our benchmarks and prints one JSON object of seconds a
# call. A key is the name of our benchmark; "vector/" before it is one element of a call with a
# thousand of them.
#
# Run: Rscript distributions.R        (Debian package r-base-core)

here <- dirname(sub("--file=", "", grep("^--file=", commandArgs(FALSE), value = TRUE)))
source(file.path(here, "timing.R"))

result <- list()
elements <- 1000
# `call` takes one argument, which is a vector of near values the second time.
time <- function(key, call, at, vector = TRUE) {
  result[[key]] <<- seconds(function() call(at), least = 0.03)
  if (vector) {
    near <- at * seq(1 - 1e-6, 1, length.out = elements)
    result[[paste0("vector/", key)]] <<- seconds_brief(function() call(near)) / elements
  }
}
seconds_brief <- function(call) seconds(call, least = 0.03, batch = 1)

# df1, df2, delta and f in hundredths
for (d in list(c(2, 10, 5, 300), c(3, 60, 10, 300), c(10, 200, 30, 200), c(20, 2000, 60, 160),
               c(1, 98, 1, 394), c(5, 500, 500, 5000))) {
  key <- sprintf("%d/%d/%d/%d", d[1], d[2], d[3], d[4])
  time(paste0("NoncentralFCdf/", key), function(f) pf(f, d[1], d[2], ncp = d[3]), d[4] / 100)
  time(paste0("CentralFQuantile/", key), function(p) qf(p, d[1], d[2]), 0.95)
  time(paste0("NoncentralFQuantile/", key), function(p) qf(p, d[1], d[2], ncp = d[3]), 0.95, FALSE)
}

for (df in c(1, 10, 100, 1000, 5000)) {
  for (delta in c(0, 5, 50, 500)) {
    for (sd in c(-1, 2)) {
      x <- df + delta + sd * sqrt(2 * (df + 2 * delta))
      if (x <= 0) x <- 0.25 * df
      time(sprintf("NoncentralChiSquareCdf/df:%d/delta:%d/sd:%d", df, delta, sd),
           function(x) pchisq(x, df, ncp = delta), x)
    }
  }
}
for (df in c(4, 20, 200, 2000)) {
  for (delta in c(2, 20, 200)) {
    time(sprintf("NoncentralChiSquareQuantile/df:%d/delta:%d", df, delta),
         function(p) qchisq(p, df, ncp = delta), 0.95, FALSE)
  }
}

for (n in c(10, 100, 1000, 10000, 100000)) {
  for (thousandths in c(20, 300, 500)) {
    pi <- thousandths / 1000
    for (sd in c(-1, 2)) {
      k <- floor(max(n * pi + sd * sqrt(n * pi * (1 - pi)), 0))
      time(sprintf("BinomialCdf/n:%d/thousandths:%d/sd:%d", n, thousandths, sd),
           function(pi) pbinom(k, n, pi), pi)
    }
    if (n != 10000) {
      time(sprintf("BinomialQuantile/n:%d/thousandths:%d", n, thousandths),
           function(pi) qbinom(0.95, n, pi), pi)
    }
  }
}

print_seconds("R", result)
