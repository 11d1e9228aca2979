#!/usr/bin/Rscript
# Times R and its package pwr on the inputs of our benchmarks and prints one JSON object of seconds
# a call, with the keys of peers.py, and `process`, a whole Rscript run.
#
# Run: Rscript peers.R        (Debian packages r-base-core and r-cran-pwr)

suppressMessages(library(pwr))

alpha <- 0.05
power <- function(size, effect)
  pwr.t.test(n = size, d = effect, sig.level = alpha)$power
required_size <- function(effect)
  pwr.t.test(d = effect, sig.level = alpha, power = 0.8)$n

# The best of three means, each over at least `least` seconds.
seconds <- function(call, least = 0.2) {
  call()
  best <- Inf
  for (round in 1:3) {
    count <- 0
    start <- proc.time()[["elapsed"]]
    repeat {
      for (i in 1:10) call()
      count <- count + 10
      elapsed <- proc.time()[["elapsed"]] - start
      if (elapsed >= least) break
    }
    best <- min(best, elapsed / count)
  }
  best
}

once <- function(call) min(sapply(1:3, function(i) system.time(call())[["elapsed"]]))

result <- list()
for (df in c(9, 49, 499, 9999)) {
  result[[sprintf("cdf/%d", df)]] <- seconds(function() pt(2, df, 1))
}
result[["power"]] <- seconds(function() power(50, 0.5))
for (effect in c(0.8, 0.5, 0.2, 0.05)) {
  result[[sprintf("size/%g", effect)]] <- seconds(function() required_size(effect))
}
result[["power_curve"]] <- once(function() for (i in 1:100) power(5 * i, 0.5))
result[["size_curve"]] <- once(function() for (i in 0:99) required_size(0.1 + 0.01 * i))
result[["process"]] <- once(function()
  system2(file.path(R.home("bin"), "Rscript"),
          c("-e", shQuote("pwr::pwr.t.test(d = .5, sig.level = .05, power = .8)")),
          stdout = FALSE))

entries <- sprintf("\"%s\": %.9g", names(result), unlist(result))
cat(sprintf("{\"peer\": \"pwr\", \"seconds\": {%s}}\n", paste(entries, collapse = ", ")))
