# What the R programs of this folder share: how they time a call and print their times.

# Processor time, so that a busy machine does not count.
clock <- function() sum(proc.time()[c("user.self", "sys.self")])

# Seconds a call: the best of three means, each over at least `least` seconds.
seconds <- function(call, least = 0.2, batch = 10) {
  call()
  best <- Inf
  for (round in 1:3) {
    count <- 0
    start <- clock()
    repeat {
      for (i in seq_len(batch)) call()
      count <- count + batch
      elapsed <- clock() - start
      if (elapsed >= least) break
    }
    best <- min(best, elapsed / count)
  }
  best
}

# The same for what takes long.
seconds_of_one <- function(call) seconds(call, batch = 1)

# One JSON object, its numbers by key.
print_seconds <- function(peer, result) {
  entries <- sprintf("\"%s\": %.9g", names(result), unlist(result))
  cat(sprintf("{\"peer\": \"%s\", \"seconds\": {%s}}\n", peer, paste(entries, collapse = ", ")))
}
